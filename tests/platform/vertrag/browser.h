#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

namespace kalvaro {

// Stands in for whatever opens addresses. One at a time.
class Browser final : public QObject
{
    Q_OBJECT

public:
    Browser()
    {
        for (const QString &schema : schemata_) {
            QDesktopServices::setUrlHandler(schema, this, "oeffnen");
        }
    }

    ~Browser() override
    {
        for (const QString &schema : schemata_) {
            QDesktopServices::unsetUrlHandler(schema);
        }
    }

    Browser(const Browser &) = delete;
    Browser &operator=(const Browser &) = delete;

    Q_INVOKABLE void oeffnen(const QUrl &url) { adressen_.append(url); }

    [[nodiscard]] const QList<QUrl> &adressen() const { return adressen_; }

private:
    QList<QUrl> adressen_;
    const QStringList schemata_{QStringLiteral("http"), QStringLiteral("https"),
                                QStringLiteral("file"), QStringLiteral("mailto"),
                                QStringLiteral("javascript")};
};

} // namespace kalvaro
