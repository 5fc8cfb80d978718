#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>

class QNetworkAccessManager;
class QNetworkReply;

namespace corkwheel {

// Loads the picture of an image panel from a file path or an http/https address.
//
// A file is read at once; a missing file or one that is not an image gives a null image.
// A download runs in the background and is decoded on a worker thread; only a success
// replaces the picture, so a failed download keeps what was shown. Several downloads may
// overlap: the one that finishes last wins.
class ImageLoader : public QObject {
    Q_OBJECT

public:
    explicit ImageLoader(QObject* parent = nullptr);

    void load(const QString& source);

    // Only an exact-case "http" or "https" scheme is a download; anything else is a path.
    static bool isDownload(const QString& source);
    // Limits of one download, so one bad panel cannot fill the memory or hang forever.
    static constexpr qint64 kMaxDownloadBytes = 32 * 1024 * 1024;
    static constexpr std::chrono::seconds kTransferLimit{60};

Q_SIGNALS:
    void imageLoaded(const QImage& image);

private:
    void download(const QUrl& url);
    void keepIncoming(QNetworkReply* reply, QByteArray& bytes);
    void finishDownload(QNetworkReply* reply, const QByteArray& bytes);

    static QNetworkAccessManager& network();
};

} // namespace corkwheel
