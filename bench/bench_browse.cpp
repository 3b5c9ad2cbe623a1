#include "backup/cf_type.h"
#include "base/error.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "sample/sample_maker.h"
#include "views/file_sys_main_form.h"
#include "views/photo_grid.h"
#include "views/photos_main_form.h"

#include "bench_table.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>

namespace {
constexpr int treeFiles = 500000;
constexpr int pictures = 50000;
constexpr double longestBlockMs = 100;

OpenBackupPtr openBackup(const QString &folder)
{
    auto backup = std::make_shared<OpenBackup>(folder);
    NoProgress nobody;
    backup->manifest().loadInfo();
    backup->manifest().buildIndex(nobody);
    return backup;
}

void writeManifestPlist(const QString &folder)
{
    QFile manifest(folder + QStringLiteral("/Manifest.plist"));
    if (!manifest.open(QIODevice::WriteOnly))
        throw Error(manifest.errorString());
    manifest.write(CFType::newDictionary().serialise(CFType::Format::Binary));
}

void benchTree()
{
    const QTemporaryDir folder;
    makeCatalogueOnly(folder.filePath(QStringLiteral("Manifest.db")), treeFiles, 1);
    writeManifestPlist(folder.path());
    bench::compare(
        "load 500,000 files and show their tree", 1.2,
        [&] {
            FileSysMainForm form(openBackup(folder.path()));
            form.resize(900, 700);
            form.show();
            QApplication::processEvents();
            form.grab();
        },
        [&] { openBackup(folder.path()); });

    FileSysMainForm form(openBackup(folder.path()));
    form.show();
    std::vector<double> typed;
    for (const char *text : {"a", "IMG_12", "no such name"}) {
        form.filterEdit()->setText(QLatin1String(text));
        QElapsedTimer looking;
        looking.start();
        while (looking.elapsed() < 3000)
            typed.push_back(bench::milliseconds([] { QApplication::processEvents(); }));
    }
    bench::printRow("longest block while filtering 500,000 files (ms)",
                    *std::max_element(typed.begin(), typed.end()), longestBlockMs, 1);
}

SampleOptions manyPictures(const QString &folder)
{
    QImage image(640, 480, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, x * y % 256));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 40);
    SampleOptions options;
    options.folder = folder;
    options.messages = 0;
    options.files = 0;
    for (int i = 0; i < pictures; ++i)
        options.extraRows.push_back(
            {QStringLiteral("CameraRollDomain"),
             QStringLiteral("Media/DCIM/%1APPLE/PIC_%2.JPG").arg(200 + i / 1000).arg(i), buffer.data()});
    return options;
}

/// The longest time in which the window could not have answered, while somebody drags the scroll bar down.
void benchScroll()
{
    const QTemporaryDir parent;
    const QString folder = parent.filePath(QStringLiteral("backup"));
    makeSample(manyPictures(folder));
    PhotosMainForm form(openBackup(folder), CameraRollKind::Photo);
    form.resize(1200, 800);
    form.show();
    QApplication::processEvents();
    QScrollBar *bar = form.findChild<PhotoGrid *>()->verticalScrollBar();
    constexpr int steps = 600;
    double longest = 0;
    for (int step = 0; step <= steps; ++step) {
        bar->setValue(static_cast<int>(qint64{bar->maximum()} * step / steps));
        // A moment of real time for the worker, in which its thumbnails come in and are painted.
        QElapsedTimer moment;
        moment.start();
        while (moment.elapsed() < 16)
            longest = std::max(longest, bench::milliseconds([] { QApplication::processEvents(); }));
    }
    bench::printRow("longest block while scrolling 50,000 pictures (ms)", longest, longestBlockMs, 1);
}
} // namespace

/// How long the views of very many files keep a person waiting.
int main(int argc, char **argv)
{
    const QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    initResources();
    installTexts();
    try {
        benchTree();
        benchScroll();
    } catch (const Error &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
