// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/DemoHome.h"

#include "System/ChildProcess.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QSet>

#include <gtest/gtest.h>

#include <algorithm>

namespace sallowmere {

namespace {

constexpr int longestRun = 60'000;

ProgramRun finish(QProcess& process) {
    if (!process.waitForFinished(longestRun) || process.exitStatus() != QProcess::NormalExit) {
        return {};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

double weightOf(const QJsonObject& usage) {
    return usage["input_tokens"].toDouble() + 5 * usage["output_tokens"].toDouble()
           + 1.25 * usage["cache_creation_input_tokens"].toDouble()
           + 0.1 * usage["cache_read_input_tokens"].toDouble();
}

} // namespace

ProgramRun runProgram(const QString& program, const QStringList& arguments, const QString& home) {
    QProcess process;
    if (!home.isEmpty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home);
        process.setProcessEnvironment(environment);
    }
    process.start(program, arguments);
    return finish(process);
}

void startScript(QProcess& script, const QStringList& arguments) {
    script.start(QString::fromUtf8(demoHomeScript), arguments);
}

ProgramRun runScript(const QStringList& arguments) {
    QProcess script;
    startScript(script, arguments);
    return finish(script);
}

DemoHome::DemoHome(const QString& name) {
    const QString path = directory_.filePath(name);
    // Not by QProcess, behind which race detectors see nothing any more in a test with threads.
    const Outcome outcome =
        run({demoHomeScript, {"make-demo-home", path.toStdString()}, {"PATH=/usr/bin:/bin"}, {}});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    home_ = QFileInfo(path).canonicalFilePath();
}

std::string DemoHome::path() const {
    return home_.toStdString();
}

QString DemoHome::file(const char* name) const {
    return home_ + u'/' + QString::fromUtf8(name);
}

QStringList DemoHome::transcripts() const {
    QStringList paths;
    QDirIterator entries(file(".claude/projects"), {QStringLiteral("*.jsonl")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        paths << entries.next();
    }
    EXPECT_FALSE(paths.isEmpty());
    return paths;
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << path.toStdString();
    return file.readAll();
}

std::vector<QByteArray> linesOf(const QByteArray& content) {
    const QList<QByteArray> lines = content.split('\n');
    return {lines.begin(), lines.end() - (content.endsWith('\n') ? 1 : 0)};
}

MessageWeights weighMessages(const QStringList& transcripts) {
    MessageWeights weights;
    QSet<QString> counted;
    for (const QString& path : transcripts) {
        for (const QByteArray& line : linesOf(contentOf(path))) {
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            if (object["type"] != QStringLiteral("assistant")) {
                continue;
            }
            const QJsonObject message = object["message"].toObject();
            const double weight = weightOf(message["usage"].toObject());
            weights.everyLine += weight;
            if (counted.contains(message["id"].toString())) {
                continue;
            }
            counted.insert(message["id"].toString());
            const QString model = message["model"].toString();
            weights.once += weight;
            weights.times.push_back(
                QDateTime::fromString(object["timestamp"].toString(), Qt::ISODateWithMs));
            weights.fableOnce += model.contains("opus") || model.contains("fable") ? weight : 0;
        }
    }
    std::sort(weights.times.begin(), weights.times.end());
    return weights;
}

} // namespace sallowmere
