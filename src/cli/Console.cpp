#include "cli/Console.h"

#include <unistd.h>

#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <utility>

#include "imaging/Words.h"
#include "imaging/files/FileName.h"

namespace lumirra {
namespace {

// File names may hold anything, also what would drive the terminal.
QString Harmless(QString text) {
    for (QChar& c : text) {
        if (c.category() == QChar::Other_Control && c != QLatin1Char('\t')) {
            c = QLatin1Char('?');
        }
    }
    return text;
}

/// 0, or the system's error number.
int Write(std::FILE* stream, const QString& text) {
    const QByteArray bytes = ReadableName(text).toLocal8Bit();
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size && std::fflush(stream) == 0
               ? 0
               : errno;
}

QString MinutesAndSeconds(double seconds) {
    const int whole = static_cast<int>(std::lround(std::min(seconds, 359999.0)));
    return Filled(QStringLiteral("%1:%2"), whole / 60,
                  QString::number(whole % 60).rightJustified(2, QLatin1Char('0')));
}

}  // namespace

Console::Console(bool quiet, std::function<void()> onProgress)
    : quiet_(quiet), onProgress_(std::move(onProgress)), onTerminal_(isatty(STDERR_FILENO) == 1) {}

void Console::Result(const QString& line) {
    ClearBar();
    if (!quiet_) {
        WriteOutput(Harmless(line) + QLatin1Char('\n'));
    }
}

void Console::Print(const QString& text) {
    WriteOutput(text);
}

void Console::Warning(const QString& line) {
    ClearBar();
    WriteError(QStringLiteral("Warning: ") + Harmless(line) + QLatin1Char('\n'));
}

void Console::Error(const QString& line) {
    ClearBar();
    WriteError(QStringLiteral("lumirra-cli: ") + Harmless(line) + QLatin1Char('\n'));
}

void Console::Progress(const QString& phase, int done, int total) {
    if (onProgress_) {
        onProgress_();
    }
    if (quiet_ || total <= 0) {
        return;
    }
    if (phase != phase_) {
        phase_ = phase;
        quarter_ = 0;
        phaseStart_ = std::chrono::steady_clock::now();
        lastShown_ = {};
    }
    if (onTerminal_) {
        ShowBar(phase, done, total);
        return;
    }
    const auto quarter = static_cast<int>(4LL * done / total);
    if (quarter > quarter_) {
        quarter_ = quarter;
        WriteError(
            Filled(QStringLiteral("%1: %2 %, %3 of %4\n"), phase, quarter * 25, done, total));
    }
}

void Console::ShowBar(const QString& phase, int done, int total) {
    constexpr int kCells = 30;
    const auto now = std::chrono::steady_clock::now();
    if (done < total && now - lastShown_ < std::chrono::milliseconds(100)) {
        return;
    }
    lastShown_ = now;
    const double share = static_cast<double>(done) / total;
    const std::chrono::duration<double> spent = now - phaseStart_;
    const int cells = static_cast<int>(share * kCells);
    const QString left =
        done > 0 && done < total
            ? MinutesAndSeconds(spent.count() * (total - done) / done) + QStringLiteral(" left")
            : QString();
    WriteError(Filled(QStringLiteral("\r%1 [%2%3] %4 % %5\x1b[K"), phase.leftJustified(8),
                      QString(cells, QLatin1Char('#')), QString(kCells - cells, QLatin1Char('.')),
                      QString::number(static_cast<int>(share * 100)).rightJustified(3), left));
    barShown_ = true;
    if (done >= total) {
        ClearBar();
    }
}

void Console::ClearBar() {
    if (barShown_) {
        WriteError(QStringLiteral("\r\x1b[K"));
        barShown_ = false;
    }
}

void Console::WriteOutput(const QString& text) {
    const int error = Write(stdout, text);
    outputError_ = outputError_ != 0 ? outputError_ : error;
}

void Console::WriteError(const QString& text) {
    static_cast<void>(Write(stderr, text));
}

QString MessageOf(const Failure& failure) {
    if (failure.file.isEmpty() ||
        ReadableName(failure.message).contains(ReadableName(QFileInfo(failure.file).fileName()))) {
        return failure.message;
    }
    return failure.file + QStringLiteral(": ") + failure.message;
}

}  // namespace lumirra
