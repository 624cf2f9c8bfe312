#include "doubles/vorlesehilfe.h"

// Whether anybody listens is for Qt's platforms to say, and offscreen nobody ever does. These are
// their exported functions, as far as they are needed; Qt's private headers would be one more
// package.
class QPlatformAccessibility
{
public:
    void setActive(bool aktiv);
};

class QPlatformIntegration
{
public:
    [[nodiscard]] QPlatformAccessibility *accessibility() const; // offscreen's; uses no member
};

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

Vorlesehilfe *diese = nullptr; // Qt takes a plain function

void zuhoeren(bool ja)
{
    const QPlatformIntegration platz{};
    platz.accessibility()->setActive(ja);
}

} // namespace

Vorlesehilfe::Vorlesehilfe()
{
    diese = this;
    zuhoeren(true);
    QAccessible::installUpdateHandler(hoeren);
}

Vorlesehilfe::~Vorlesehilfe()
{
    QAccessible::installUpdateHandler(nullptr);
    zuhoeren(false);
    diese = nullptr;
}

void Vorlesehilfe::weghoeren()
{
    zuhoeren(false);
}

void Vorlesehilfe::hoeren(QAccessibleEvent *ereignis)
{
    diese->merken(ereignis);
}

void Vorlesehilfe::merken(QAccessibleEvent *ereignis)
{
    if (const auto ansage = ansageIn(*ereignis)) {
        ansagen_.append(*ansage);
        return;
    }
    QAccessibleInterface *const zugang = ereignis->accessibleInterface();
    const QString wer = zugang != nullptr ? u' ' + zugang->text(QAccessible::Name) : QString();
    switch (ereignis->type()) {
    case QAccessible::Focus:
        ereignisse_.append(u"Focus"_s + wer);
        break;
    case QAccessible::DescriptionChanged:
        ereignisse_.append(u"Description"_s + wer);
        break;
    case QAccessible::Alert:
        ereignisse_.append(u"Alert"_s + wer);
        break;
    case QAccessible::StateChanged: {
        const auto neu = static_cast<QAccessibleStateChangeEvent *>(ereignis)->changedStates();
        if (neu.checked != 0U) {
            ereignisse_.append(u"checked"_s + wer);
        }
        if (neu.expanded != 0U) {
            ereignisse_.append(u"expanded"_s + wer);
        }
        if (neu.collapsed != 0U) {
            ereignisse_.append(u"collapsed"_s + wer);
        }
        break;
    }
    default:
        break;
    }
}

} // namespace kalvaro
