#include "imaging/files/FileName.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QStringDecoder>
#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "imaging/files/Descriptor.h"

namespace lumirra {
namespace {

constexpr char16_t kStrayBytes = 0xDC00;  // plus the byte

bool IsStray(const QString& text, qsizetype at) {
    const char16_t unit = text[at].unicode();
    const bool paired = at > 0 && text[at - 1].isHighSurrogate();
    return unit >= kStrayBytes + 0x80 && unit <= kStrayBytes + 0xFF && !paired;
}

std::optional<QString> Decoded(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

/// How many bytes the first of them says its character has.
qsizetype LengthAfter(char first) {
    const auto lead = static_cast<unsigned char>(first);
    return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

}  // namespace

QString FileText(const QByteArray& name) {
    if (auto text = Decoded(name)) {
        return *std::move(text);
    }
    QString text;
    for (QByteArrayView rest(name); !rest.isEmpty();) {
        const qsizetype length = std::min(LengthAfter(rest.front()), rest.size());
        const auto character = Decoded(rest.first(length));
        text += character.value_or(
            QChar(char16_t(kStrayBytes + static_cast<unsigned char>(rest.front()))));
        rest = rest.sliced(character ? length : 1);
    }
    return text;
}

QByteArray FileBytes(const QString& text) {
    QByteArray name;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (IsStray(text, i)) {
            name += QStringView(text).sliced(begin, i - begin).toUtf8();
            name += static_cast<char>(text[i].unicode() & 0xFFU);
            begin = i + 1;
        }
    }
    return name + QStringView(text).sliced(begin).toUtf8();
}

QString ReadableName(const QString& text) {
    QString readable = text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (IsStray(text, i)) {
            readable[i] = QChar::ReplacementCharacter;
        }
    }
    return readable;
}

QString FilePath(const QUrl& address) {
    return FileText(QByteArray::fromPercentEncoding(address.path(QUrl::FullyEncoded).toLatin1()));
}

QString FolderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? QStringLiteral(".") : path.first(std::max<qsizetype>(slash, 1));
}

FileFacts FactsOf(const QString& path) {
    struct stat status {};
    if (::stat(FileBytes(path).constData(), &status) != 0) {
        return {};
    }
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    return {true, S_ISREG(status.st_mode), S_ISDIR(status.st_mode), status.st_size,
            status.st_mtim.tv_sec * kPerSecond + status.st_mtim.tv_nsec};
}

int OpenForReading(QFile& file, const QString& path) {
    Descriptor opened(::open(FileBytes(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!opened.IsOpen()) {
        return errno;
    }
    if (!file.open(opened.Get(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        return EIO;
    }
    opened.Release();
    return 0;
}

}  // namespace lumirra
