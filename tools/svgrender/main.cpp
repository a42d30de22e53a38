// svgrender: renders an SVG file into a transparent PNG.
//
//   svgrender <in.svg> <out.png> [width height]
//   svgrender --sheet <out.png> <picture>...   (review grid of PNG/SVG files)
//
// Exits with 0 on success and non-zero when an input cannot be read or the
// output cannot be written.

#include "contactsheet.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>

#include <cstdio>

namespace {

int usage()
{
    std::fprintf(stderr, "usage: svgrender <in.svg> <out.png> [width height]\n"
                         "       svgrender --sheet <out.png> <picture>...\n");
    return 2;
}

bool parseSize(const QString &w, const QString &h, QSize *size)
{
    bool okW = false;
    bool okH = false;
    const int width = w.toInt(&okW);
    const int height = h.toInt(&okH);
    if (!okW || !okH || width <= 0 || height <= 0 || width > 16384 || height > 16384)
        return false;
    *size = QSize(width, height);
    return true;
}

int renderSvg(const QString &in, const QString &out, const QSize &requested)
{
    QSvgRenderer renderer;
    if (!renderer.load(in) || !renderer.isValid()) {
        std::fprintf(stderr, "svgrender: cannot load SVG '%s'\n", qPrintable(in));
        return 1;
    }
    const QSize size = requested.isValid() ? requested : renderer.defaultSize();
    if (size.isEmpty()) {
        std::fprintf(stderr, "svgrender: '%s' has no size\n", qPrintable(in));
        return 1;
    }
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        renderer.render(&painter);
    }
    if (!image.convertToFormat(QImage::Format_ARGB32).save(out, "PNG")) {
        std::fprintf(stderr, "svgrender: cannot write '%s'\n", qPrintable(out));
        return 1;
    }
    return 0;
}

int renderSheet(const QString &out, const QStringList &files)
{
    if (files.isEmpty())
        return usage();
    if (!makeContactSheet(files).save(out, "PNG")) {
        std::fprintf(stderr, "svgrender: cannot write '%s'\n", qPrintable(out));
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);

    if (args.size() >= 2 && args.first() == QLatin1String("--sheet"))
        return renderSheet(args.at(1), args.mid(2));
    if (args.size() == 2)
        return renderSvg(args.at(0), args.at(1), QSize());
    QSize size;
    if (args.size() == 4 && parseSize(args.at(2), args.at(3), &size))
        return renderSvg(args.at(0), args.at(1), size);
    return usage();
}
