// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/OneJobPerKey.h"

#include <QHash>
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
// Both are read and decoded in the background, so a huge file, or one on a network mount
// that hangs, never holds up the desktop. A file that is missing or not an image gives a
// null image; a download replaces the picture only when it succeeds, so a failed one keeps
// what was shown. Loads of different sources may overlap, but a picture never replaces
// one from a later load. A load of a source that is still loading waits for that load
// instead of starting another, so a source that never answers costs one load at a time.
class ImageLoader : public QObject {
    Q_OBJECT

public:
    explicit ImageLoader(QObject* parent = nullptr);

    void load(const QString& source);

    // Only an exact-case "http" or "https" scheme is a download; anything else is a path.
    static bool isDownload(const QString& source);

    // Limits of one download, so one bad panel cannot fill the memory or hang forever.
    static constexpr qint64 kMaxDownloadBytes = 32 * 1024 * 1024;
    static constexpr std::chrono::milliseconds kTransferLimit = std::chrono::seconds(60);
    static constexpr int kMaxRedirects = 10;

    // For downloads started from now on.
    void setTransferLimit(std::chrono::milliseconds limit) { m_transferLimit = limit; }

Q_SIGNALS:
    void imageLoaded(const QImage& image);

private:
    void readFile(const QString& source);
    void download(const QString& source);
    void keepIncoming(QNetworkReply* reply, QByteArray& bytes);
    void finishDownload(const QString& source, QNetworkReply* reply, const QByteArray& bytes);
    quint64 settle(const QString& source);
    void show(quint64 ticket, const QImage& image);

    static QNetworkAccessManager& network();

    // Every load takes the next ticket; a picture from an older ticket than the one shown
    // is dropped.
    quint64 m_lastTicket = 0;
    quint64 m_shownTicket = 0;
    // One load at a time per source; a picture is shown under the ticket of the latest load
    // that asked for its source.
    OneJobPerKey m_loading;
    QHash<QString, quint64> m_latestTickets;
    std::chrono::milliseconds m_transferLimit = kTransferLimit;
};

} // namespace corkwheel
