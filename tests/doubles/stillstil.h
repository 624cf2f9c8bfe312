#pragma once

#include <QProxyStyle>

namespace kalvaro {

// A system that asks for less motion.
class Stillstil : public QProxyStyle
{
public:
    Stillstil()
        : QProxyStyle(QStringLiteral("fusion"))
    {
    }

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *mehr) const override
    {
        return hint == SH_Widget_Animation_Duration
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, mehr);
    }
};

} // namespace kalvaro
