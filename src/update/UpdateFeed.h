#pragma once

#include "update/AppVersion.h"

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace tarnwick {

// The update feed's answer: the newest version offered and where to get it.
struct UpdateFeed {
    AppVersion version;
    QUrl downloadURL;

    // "https://" + the update host + "/quorle/version.json".
    static QUrl feedURL();
    // "https://" + the update host + "/quorle/", for feeds that name no download page.
    static QUrl fallbackDownloadURL();

    // Reads a feed body: a JSON object with a "version" text and an optional "url", or else a
    // bare version in UTF-8 text. Nothing when the body is neither or its version is not valid.
    static std::optional<UpdateFeed> fromData(const QByteArray& body);

    friend bool operator==(const UpdateFeed&, const UpdateFeed&) = default;
};

} // namespace tarnwick
