#include "engine/ImageLoader.h"

#include "engine/BackgroundTask.h"
#include "engine/ImageDecoder.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include <memory>

namespace corkwheel {

ImageLoader::ImageLoader(QObject* parent) : QObject(parent) {}

bool ImageLoader::isDownload(const QString& source) {
    // QUrl lower-cases schemes, so the exact case is checked on the text itself.
    const bool httpText =
        source.startsWith(QStringLiteral("http:")) || source.startsWith(QStringLiteral("https:"));
    return httpText && QUrl(source, QUrl::StrictMode).isValid();
}

void ImageLoader::load(const QString& source) {
    if (source.isEmpty()) {
        Q_EMIT imageLoaded(QImage());
        return;
    }
    if (isDownload(source)) {
        download(QUrl(source, QUrl::StrictMode));
        return;
    }
    Q_EMIT imageLoaded(ImageDecoder::readFile(source));
}

QNetworkAccessManager& ImageLoader::network() {
    // One manager for every panel; parented to the application so it goes before Qt does.
    static auto* manager = new QNetworkAccessManager(QCoreApplication::instance());
    return *manager;
}

void ImageLoader::download(const QUrl& url) {
    QNetworkRequest request(url);
    // Never follow a redirect from https down to http.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    QNetworkReply* reply = network().get(request);
    reply->setParent(this);

    auto* limit = new QTimer(reply);
    limit->setSingleShot(true);
    connect(limit, &QTimer::timeout, reply, &QNetworkReply::abort);
    limit->start(kTransferLimit);

    auto bytes = std::make_shared<QByteArray>();
    connect(reply, &QNetworkReply::readyRead, this,
            [this, reply, bytes] { keepIncoming(reply, *bytes); });
    connect(reply, &QNetworkReply::finished, this,
            [this, reply, bytes] { finishDownload(reply, *bytes); });
}

void ImageLoader::keepIncoming(QNetworkReply* reply, QByteArray& bytes) {
    bytes += reply->readAll();
    if (bytes.size() > kMaxDownloadBytes) {
        bytes.clear();
        reply->abort();
    }
}

void ImageLoader::finishDownload(QNetworkReply* reply, const QByteArray& bytes) {
    reply->deleteLater();
    if (reply->error() != QNetworkReply::NoError)
        return;
    const QByteArray all = bytes + reply->readAll();
    if (all.size() > kMaxDownloadBytes)
        return;
    BackgroundTask::run(
        this, [all] { return ImageDecoder::decode(all); },
        [this](const QImage& image) {
            if (!image.isNull())
                Q_EMIT imageLoaded(image);
        });
}

} // namespace corkwheel
