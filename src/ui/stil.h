#pragma once

#include <QProxyStyle>

namespace kalvaro {

// Draws buttons, check boxes, fields and lists in our own manner, for a desktop that has no style
// of its own.
class Stil final : public QProxyStyle
{
    Q_OBJECT

public:
    Stil();

    // What Qt draws by itself (menus, alerts, tool tips, placeholders) is readable, too.
    using QProxyStyle::polish;
    void polish(QPalette &palette) override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *maler,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *maler,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl element, const QStyleOptionComplex *option,
                            QPainter *maler, const QWidget *widget) const override;
    // A German text stays in its order where the layout goes from right to left.
    void drawItemText(QPainter *maler, const QRect &platz, int flags, const QPalette &palette,
                      bool an, const QString &inhalt,
                      QPalette::ColorRole rolle = QPalette::NoRole) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl element, const QStyleOptionComplex *option,
                                       SubControl stueck, const QWidget *widget) const override;
    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption *option,
                                       const QWidget *widget) const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap welches, const QStyleOption *option,
                                     const QWidget *widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric mass, const QStyleOption *option,
                                  const QWidget *widget) const override;
    [[nodiscard]] int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                                QStyleHintReturn *mehr) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType art, const QStyleOption *option,
                                         const QSize &inhalt, const QWidget *widget) const override;
};

} // namespace kalvaro
