// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace sallowmere {

/// How a program ended and what it said. `status` is -1 for one that crashed or did not start.
struct ProgramRun {
    int status = -1;
    QString output;
    QString errors;
};

/// Runs a program to its end, with `home` as the home directory unless it is empty.
ProgramRun runProgram(const QString& program, const QStringList& arguments,
                      const QString& home = {});

/// The script that writes demo homes.
inline constexpr const char* demoHomeScript = SALLOWMERE_SOURCE_DIR "/Scripts/make-demo-home";
void startScript(QProcess& script, const QStringList& arguments);
ProgramRun runScript(const QStringList& arguments);

/// A demo home as the script writes it, gone with this object.
class DemoHome {
public:
    explicit DemoHome(const QString& name = QStringLiteral("home"));

    std::string path() const;
    /// The path of what is called `name` in it.
    QString file(const char* name) const;
    /// The paths of all files `*.jsonl`, those of sub-agents too.
    QStringList transcripts() const;

private:
    QTemporaryDir directory_;
    QString home_;
};

QByteArray contentOf(const QString& path);
std::vector<QByteArray> linesOf(const QByteArray& content);

/// Weighted tokens of the messages in some transcripts, found another way than the program does.
struct MessageWeights {
    double once = 0;
    double fableOnce = 0;
    /// What counting every line of a message would give.
    double everyLine = 0;
    /// When each was written, in ascending order.
    std::vector<QDateTime> times;
};

MessageWeights weighMessages(const QStringList& transcripts);

} // namespace sallowmere
