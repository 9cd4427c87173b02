#include "app/gif/GifCopy.h"

#include <QFile>
#include <QUrl>
#include <utility>

#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"

namespace lumirra {
namespace {

constexpr auto kGifType = QLatin1String("image/gif");

class GifMimeData : public QMimeData {
  public:
    explicit GifMimeData(std::shared_ptr<const GifCopy> copy) : copy_(std::move(copy)) {
        const QByteArray address =
            "file://" + FileBytes(copy_->Path()).toPercentEncoding(QByteArrayLiteral("/"));
        setUrls({QUrl::fromEncoded(address)});
        for (const char* desktop : {"gnome", "mate"}) {
            setData(QStringLiteral("x-special/%1-copied-files").arg(QLatin1String(desktop)),
                    "copy\n" + address);
        }
        setData(QStringLiteral("application/x-kde-cutselection"), "0");
    }

    QStringList formats() const override { return QMimeData::formats() << kGifType; }

  protected:
    QVariant retrieveData(const QString& type, QMetaType preferred) const override {
        QFile file;
        if (type == kGifType && OpenForReading(file, copy_->Path()) == 0) {
            return file.readAll();
        }
        return QMimeData::retrieveData(type, preferred);
    }

  private:
    std::shared_ptr<const GifCopy> copy_;
};

}  // namespace

GifCopy::GifCopy(TemporaryFolder folder, QString path)
    : folder_(std::move(folder)), path_(std::move(path)) {}

Outcome<std::shared_ptr<const GifCopy>> GifCopy::Make(const QString& gif, const QString& name) {
    auto folder = TemporaryFolder::Make();
    if (!folder) {
        return folder.failure();
    }
    const QString path = folder->Path() + QLatin1Char('/') + name;
    if (const auto noted = TemporaryFolder::NoteFile(path); !noted) {
        return noted.failure();
    }
    if (const auto copied = ReplaceByCopy(path, gif, FileKind::Working); !copied) {
        return copied.failure();
    }
    return std::shared_ptr<const GifCopy>(new GifCopy(*std::move(folder), path));
}

std::unique_ptr<QMimeData> MimeDataOf(std::shared_ptr<const GifCopy> copy) {
    return std::make_unique<GifMimeData>(std::move(copy));
}

}  // namespace lumirra
