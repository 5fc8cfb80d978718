// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ImageLoader.h"

#include "engine/BackgroundTask.h"
#include "engine/ImageDecoder.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include <memory>

namespace corkwheel {

ImageLoader::ImageLoader(QObject* parent) : QObject(parent), m_loading(this) {}

bool ImageLoader::isDownload(const QString& source) {
    // QUrl lower-cases schemes, so the exact case is checked on the text itself.
    const bool httpText =
        source.startsWith(QStringLiteral("http:")) || source.startsWith(QStringLiteral("https:"));
    return httpText && QUrl(source, QUrl::StrictMode).isValid();
}

void ImageLoader::load(const QString& source) {
    const quint64 ticket = ++m_lastTicket;
    if (source.isEmpty()) {
        show(ticket, QImage());
        return;
    }
    m_latestTickets.insert(source, ticket);
    if (isDownload(source))
        download(source);
    else
        readFile(source);
}

// On the pool for blocking work: a file on a network share that stopped answering, or a FIFO
// nobody writes to, then holds up no other panel's work.
void ImageLoader::readFile(const QString& source) {
    m_loading.run(
        BackgroundTask::blockingPool(), source, [source] { return ImageDecoder::readFile(source); },
        [this, source](const QImage& image) { show(m_latestTickets.take(source), image); });
}

QNetworkAccessManager& ImageLoader::network() {
    // One manager for every panel; parented to the application so it goes before Qt does.
    static auto* manager = new QNetworkAccessManager(QCoreApplication::instance());
    return *manager;
}

void ImageLoader::download(const QString& source) {
    if (!m_loading.start(source))
        return;
    QNetworkRequest request(QUrl(source, QUrl::StrictMode));
    // Never follow a redirect from https down to http.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(kMaxRedirects);
    QNetworkReply* reply = network().get(request);
    reply->setParent(this);

    auto* limit = new QTimer(reply);
    limit->setSingleShot(true);
    connect(limit, &QTimer::timeout, reply, &QNetworkReply::abort);
    limit->start(m_transferLimit);

    auto bytes = std::make_shared<QByteArray>();
    connect(reply, &QNetworkReply::readyRead, this,
            [this, reply, bytes] { keepIncoming(reply, *bytes); });
    connect(reply, &QNetworkReply::finished, this,
            [this, source, reply, bytes] { finishDownload(source, reply, *bytes); });
}

void ImageLoader::keepIncoming(QNetworkReply* reply, QByteArray& bytes) {
    bytes += reply->readAll();
    if (bytes.size() > kMaxDownloadBytes) {
        bytes.clear();
        reply->abort();
    }
}

void ImageLoader::finishDownload(const QString& source, QNetworkReply* reply,
                                 const QByteArray& bytes) {
    reply->deleteLater();
    const QByteArray all =
        reply->error() == QNetworkReply::NoError ? bytes + reply->readAll() : QByteArray();
    if (all.isEmpty() || all.size() > kMaxDownloadBytes) {
        settle(source);
        return;
    }
    BackgroundTask::run(
        this, [all] { return ImageDecoder::decode(all); },
        [this, source](const QImage& image) {
            const quint64 ticket = settle(source);
            if (!image.isNull())
                show(ticket, image);
        });
}

// Ends the download of `source`, giving the ticket its picture is shown under.
quint64 ImageLoader::settle(const QString& source) {
    m_loading.finish(source);
    return m_latestTickets.take(source);
}

void ImageLoader::show(quint64 ticket, const QImage& image) {
    if (ticket < m_shownTicket)
        return;
    m_shownTicket = ticket;
    Q_EMIT imageLoaded(image);
}

} // namespace corkwheel
