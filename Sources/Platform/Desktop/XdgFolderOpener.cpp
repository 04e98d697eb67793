// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/XdgFolderOpener.h"

#include <QFileInfo>
#include <QProcess>

namespace sallowmere {

namespace {

bool isDirectory(const QString& path) {
    return path.startsWith(u'/') && !path.contains(QChar::Null) && QFileInfo(path).isDir();
}

void open(const std::string& directory) {
    const QString path = QString::fromStdString(directory);
    if (!isDirectory(path)) {
        return;
    }
    QProcess opener;
    opener.setProgram(QStringLiteral("xdg-open"));
    opener.setArguments({path});
    opener.setStandardInputFile(QProcess::nullDevice());
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    opener.startDetached();
}

} // namespace

FolderOpener xdgFolderOpener() {
    return open;
}

} // namespace sallowmere
