#pragma once

#include <QString>
#include <QUrl>

namespace kalvaro {

// One installed copy of rekordbox.
struct Installation
{
    QString version; // at most three components, "7.1.4"; "0" when the copy does not tell
    QUrl url;        // its bundle, "file:///Applications/rekordbox 7/rekordbox.app"

    bool operator==(const Installation &) const = default;
};

} // namespace kalvaro
