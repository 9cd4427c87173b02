#include "app/gif/GifInfoText.h"

#include <QCoreApplication>
#include <QStringList>

#include "output/SizeText.h"

namespace lumirra {
namespace {

QString Translated(const char* text) {
    return QCoreApplication::translate("lumirra::GifInfo", text);
}

/// "0.35 s", "2.4 s", "1:05 min".
QString DurationText(qint64 milliseconds) {
    if (milliseconds < 60'000) {
        QString seconds = QString::number(static_cast<double>(milliseconds) / 1000, 'f', 2);
        if (seconds.endsWith(QLatin1Char('0'))) {
            seconds.chop(1);
        }
        return Translated("%1 s").arg(seconds);
    }
    const qint64 whole = (milliseconds + 500) / 1000;
    return Translated("%1:%2 min").arg(whole / 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace

QString GifInfoText(const GifInfo& info, int leftOut) {
    QStringList parts{
        info.frames == 1 ? Translated("1 frame") : Translated("%1 frames").arg(info.frames),
        Translated("%1 × %2 px").arg(info.size.width()).arg(info.size.height()),
        DurationText(info.milliseconds), SizeText(info.bytes)};
    if (leftOut > 0) {
        parts.insert(1, Translated("%1 unreadable").arg(leftOut));
    }
    if (info.slowed) {
        parts.append(Translated("viewers play 0.01 s as 0.1 s"));
    }
    return parts.join(QStringLiteral(" · "));
}

QString GifRepeatText(const GifInfo& info) {
    if (info.frames < 2 || info.repeats == 0) {
        return {};
    }
    return info.repeats ? Translated("Plays %1 times").arg(*info.repeats + 1)
                        : Translated("Plays once");
}

}  // namespace lumirra
