// SPDX-License-Identifier: MIT
#include "platform/window/Icons.h"

#include "platform/window/QtText.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <utility>

namespace Platform {
namespace {

QColor TextColour(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::Text);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    default:
        return palette.color(QPalette::Active, QPalette::Text);
    }
}

class SvgIconEngine : public QIconEngine {
public:
    SvgIconEngine(QString name, QByteArray source)
        : m_name(std::move(name)), m_source(std::move(source)) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
        const double ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(place, Drawn(place.size() * ratio, mode));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return Drawn(size, mode);
    }
    QIconEngine* clone() const override { return new SvgIconEngine(*this); }

private:
    QPixmap Drawn(const QSize& pixels, QIcon::Mode mode) const;

    QString m_name;
    QByteArray m_source;
};

QPixmap SvgIconEngine::Drawn(const QSize& pixels, QIcon::Mode mode) const {
    const QString colour = TextColour(mode).name();
    const QString key = QStringLiteral("zebx %1 %2 %3 %4x%5")
                            .arg(m_name, colour)
                            .arg(mode == QIcon::Disabled)
                            .arg(pixels.width())
                            .arg(pixels.height());
    QPixmap drawn;
    if (QPixmapCache::find(key, &drawn))
        return drawn;
    QByteArray source = m_source;
    QSvgRenderer renderer(source.replace("currentColor", colour.toLatin1()));
    drawn = QPixmap(pixels);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    painter.setOpacity(mode == QIcon::Disabled ? 0.6 : 1);
    renderer.render(&painter);
    QPixmapCache::insert(key, drawn);
    return drawn;
}

} // namespace

QIcon IconFor(const char16_t* resource) {
    const QString name = ToQt(TextOf(resource));
    QFile file(QStringLiteral(":/zebx/") + name);
    if (name.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new SvgIconEngine(name, file.readAll()));
}

} // namespace Platform
