#include "base/error.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "support/fake_desktop.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "views/file_opener.h"
#include "views/item_model_photo_icon.h"
#include "views/photo_grid.h"
#include "views/photos_main_form.h"
#include "work/fetch_file_thread.h"
#include "work/thumbnail_maker.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QBuffer>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {
PhotoGrid *gridOf(const PhotosMainForm &form)
{
    return form.findChild<PhotoGrid *>(u"gridPhotos"_s);
}

QByteArray pictureOf(const char *format, QSize size, QColor colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        throw Error(u"no picture"_s);
    return buffer.data();
}

/// Empty where the program that makes films is missing.
QByteArray greenFilm()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"green.mov"_s);
    QProcess::execute(u"ffmpeg"_s, {u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s,
                                    u"color=green:s=320x240:d=0.2"_s, u"-c:v"_s, u"mpeg4"_s, path});
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

SampleOptions small(std::vector<SampleRow> rows, const QString &password = {})
{
    SampleOptions options;
    options.messages = 0;
    options.files = 0;
    options.password = password;
    options.extraRows = std::move(rows);
    return options;
}

const QString camera = u"CameraRollDomain"_s;
} // namespace

/// The grid of photos and videos, and the thumbnails in it.
class TestPhotosForm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void layoutAgainstTheSlowWay_data();
    void layoutAgainstTheSlowWay();
    void modelIsNewestFirstAndGrouped();
    void thumbnails_data();
    void thumbnails();
    void thumbnailsComeOfWhatIsOnTheScreen();
    void keysAndSelection();
    void filterAndStates();
    void missingContentIsTold();
    void exportsSelectionOrAll();
    void opensTheOneThatIsPicked();
    void opensByItsLastEndingAlone();
};

void TestPhotosForm::initTestCase()
{
    initResources();
    installTexts();
}

void TestPhotosForm::layoutAgainstTheSlowWay_data()
{
    QTest::addColumn<QList<int>>("groups");
    QTest::addColumn<int>("width");
    QTest::newRow("nothing") << QList<int>{} << 500;
    QTest::newRow("one") << QList<int>{1} << 500;
    QTest::newRow("full and broken lines") << QList<int>{5, 4, 1, 9} << 500;
    QTest::newRow("narrower than a picture") << QList<int>{2, 1} << 50;
}

void TestPhotosForm::layoutAgainstTheSlowWay()
{
    QFETCH(QList<int>, groups);
    QFETCH(int, width);
    PhotoGridLayout layout;
    layout.setGroups({groups.begin(), groups.end()});
    layout.arrange(width, 100, 30);
    const int items = layout.itemCount();
    QCOMPARE(items, std::accumulate(groups.begin(), groups.end(), 0));
    for (int item = 0; item < items; ++item) {
        const QRect rect = layout.itemRect(item);
        QVERIFY(rect.bottom() < layout.contentHeight());
        QCOMPARE(layout.itemAt(rect.center()), item);
        QCOMPARE(layout.itemBefore(rect.center()), item);
        for (int other = item + 1; other < items; ++other)
            QVERIFY(!rect.intersects(layout.itemRect(other)));
        const int below = layout.itemBelow(item);
        const int above = layout.itemAbove(item);
        QVERIFY(below == item ? rect.bottom() >= layout.itemRect(items - 1).top()
                              : layout.itemRect(below).top() > rect.top());
        QVERIFY(above == item ? item < layout.columns() : layout.itemRect(above).top() < rect.top());
    }
    for (int top = 0; top < layout.contentHeight(); top += 7) {
        const PhotoGridLayout::Range range = layout.itemsBetween(top, top + 150);
        for (int item = 0; item < items; ++item) {
            const QRect rect = layout.itemRect(item);
            const bool touches = rect.bottom() >= top && rect.top() <= top + 150;
            QVERIFY2(!touches || (item >= range.first && item < range.end),
                     qPrintable(u"item %1 at %2"_s.arg(item).arg(top)));
        }
    }
}

void TestPhotosForm::modelIsNewestFirstAndGrouped()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    ItemModelPhotoIcon model(backup, CameraRollKind::Photo);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.rowCount(), sample.summary().counts.photos + sample.summary().counts.heicPhotos);
    std::uint32_t previous = UINT32_MAX;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto modified = backup->manifest().catalogue().lastModified(model.item(row));
        QVERIFY(modified <= previous);
        previous = modified;
        const QDateTime time = QDateTime::fromSecsSinceEpoch(modified);
        QCOMPARE(model.index(row, 0).data(ItemModelPhotoIcon::GroupTitle).toString(),
                 QLocale::system().toString(time.date(), u"MMMM yyyy"_s));
    }
    const ItemModelPhotoIcon videos(backup, CameraRollKind::Video);
    QCOMPARE(videos.rowCount(), sample.summary().counts.videos);
}

void TestPhotosForm::thumbnails_data()
{
    QTest::addColumn<std::vector<SampleRow>>("rows");
    QTest::addColumn<QString>("item");
    QTest::addColumn<QColor>("colour"); // invalid: none
    const QString item = u"Media/DCIM/500APPLE/IMG_0001.JPG"_s;
    const auto jpeg = [](QSize size, QColor colour) { return pictureOf("JPEG", size, colour); };
    const SampleRow large{camera, item, jpeg({800, 600}, Qt::red)};
    const auto v2 = [&](const char *size) {
        return u"Media/PhotoData/Thumbnails/V2/DCIM/500APPLE/IMG_0001.JPG/"_s + QLatin1String(size);
    };
    using Rows = std::vector<SampleRow>;
    QTest::newRow("the picture itself") << Rows{large} << item << QColor(Qt::red);
    QTest::newRow("stored, newer systems")
        << Rows{large, {camera, v2("5003.JPG"), jpeg({120, 120}, Qt::green)}} << item << QColor(Qt::green);
    QTest::newRow("stored, the larger of two") << Rows{large,
                                                       {camera, v2("5003.JPG"), jpeg({120, 120}, Qt::red)},
                                                       {camera, v2("5005.JPG"), jpeg({300, 300}, Qt::green)}}
                                               << item << QColor(Qt::green);
    QTest::newRow("stored, older systems")
        << Rows{large,
                {camera, u"Media/DCIM/.THMB/500APPLE/500APPLE___IMG_0001.THM"_s, jpeg({160, 120}, Qt::green)}}
        << item << QColor(Qt::green);
    QTest::newRow("stored, but of another folder's item of that name")
        << Rows{large,
                {camera, u"Media/PhotoData/MetaData/DCIM/501APPLE/IMG_0001.JPG"_s,
                 jpeg({160, 120}, Qt::green)}}
        << item << QColor(Qt::red);
    QTest::newRow("stored, too coarse")
        << Rows{large, {camera, v2("5003.JPG"), jpeg({40, 40}, Qt::green)}} << item << QColor(Qt::red);
    QTest::newRow("stored one is damaged")
        << Rows{large, {camera, v2("5003.JPG"), "no picture"}} << item << QColor(Qt::red);
    QTest::newRow("damaged picture, coarse one stored")
        << Rows{{camera, item, "no picture"}, {camera, v2("5003.JPG"), jpeg({40, 40}, Qt::green)}} << item
        << QColor(Qt::green);
    QTest::newRow("damaged picture") << Rows{{camera, item, large.content.left(100)}} << item << QColor();
    const QString png = u"Media/DCIM/500APPLE/IMG_0002.PNG"_s;
    QTest::newRow("PNG") << Rows{{camera, png, pictureOf("PNG", {300, 500}, Qt::blue)}} << png
                         << QColor(Qt::blue);
    const QString film = u"Media/DCIM/500APPLE/IMG_0003.MOV"_s;
    if (const QByteArray green = greenFilm(); !green.isEmpty())
        QTest::newRow("film") << Rows{{camera, film, green}} << film << QColor(0, 128, 0);
    QTest::newRow("no film at all") << Rows{{camera, film, "no film"}} << film << QColor();
}

void TestPhotosForm::thumbnails()
{
    QFETCH(std::vector<SampleRow>, rows);
    QFETCH(QString, item);
    QFETCH(QColor, colour);
    for (const QString &password : {QString(), u"pw"_s}) {
        const SampleBackup sample(small(rows, password));
        const OpenBackupPtr backup = sample.opened(password);
        const auto index = backup->manifest().catalogue().find("CameraRollDomain", item.toUtf8());
        ThumbnailMaker maker(backup);
        NoProgress nobody;
        for (int run = 0; run < 2; ++run) { // the second out of what the first has kept
            const QImage image = maker.make(index, 150, nobody);
            QCOMPARE(image.isNull(), !colour.isValid());
            if (image.isNull())
                continue;
            QVERIFY(std::max(image.width(), image.height()) <= 150);
            const QColor middle = image.pixelColor(image.width() / 2, image.height() / 2);
            for (const int shift : {0, 8, 16})
                QVERIFY2(qAbs(int(middle.rgb() >> shift & 255) - int(colour.rgb() >> shift & 255)) < 12,
                         qPrintable(middle.name()));
        }
    }
}

void TestPhotosForm::thumbnailsComeOfWhatIsOnTheScreen()
{
    std::vector<SampleRow> rows;
    for (int i = 0; i < 300; ++i)
        rows.push_back({camera, u"Media/DCIM/500APPLE/IMG_%1.PNG"_s.arg(i, 4, 10, QLatin1Char('0')),
                        pictureOf("PNG", {20, 20}, Qt::blue)});
    const SampleBackup sample(small(rows));
    PhotosMainForm form(sample.opened(), CameraRollKind::Photo);
    form.resize(500, 400);
    form.show();
    auto *model = qobject_cast<ItemModelPhotoIcon *>(gridOf(form)->model());
    const auto made = [&] {
        int count = 0;
        for (int row = 0; row < model->rowCount(); ++row)
            count += !model->index(row, 0).data(ItemModelPhotoIcon::Thumbnail).value<QPixmap>().isNull();
        return count;
    };
    QTRY_VERIFY(made() > 4);
    QVERIFY2(made() < 60, "only the screen and its neighbours");
    gridOf(form)->verticalScrollBar()->setValue(gridOf(form)->verticalScrollBar()->maximum());
    const QModelIndex last = model->index(model->rowCount() - 1, 0);
    QTRY_VERIFY(!last.data(ItemModelPhotoIcon::Thumbnail).value<QPixmap>().isNull());
    QVERIFY(made() < 120);
}

void TestPhotosForm::keysAndSelection()
{
    const SampleBackup sample;
    PhotosMainForm form(sample.opened(), CameraRollKind::Photo);
    form.resize(700, 500);
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    PhotoGrid *grid = gridOf(form);
    const int count = grid->model()->rowCount();
    QTest::keyClick(grid, Qt::Key_End);
    QCOMPARE(grid->currentIndex().row(), count - 1);
    QVERIFY(grid->viewport()->rect().contains(grid->visualRect(grid->currentIndex()).center()));
    QTest::keyClick(grid, Qt::Key_Home);
    QCOMPARE(grid->currentIndex().row(), 0);
    QTest::keyClick(grid, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(grid, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(grid->selectionModel()->selectedIndexes().size(), 3);
    QCOMPARE(form.exportAction()->text(), u"Export 3 items"_s);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(1, 0)).center());
    QCOMPARE(grid->selectionModel()->selectedIndexes(), QModelIndexList{grid->model()->index(1, 0)});
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      grid->visualRect(grid->model()->index(0, 0)).center());
    QCOMPARE(grid->selectionModel()->selectedIndexes().size(), 2);
    QTest::keyClick(grid, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(grid->selectionModel()->selectedIndexes().size(), count);
}

void TestPhotosForm::filterAndStates()
{
    const SampleBackup sample;
    PhotosMainForm form(sample.opened(), CameraRollKind::Photo);
    form.show();
    const auto total = [&] { return form.findChild<QLabel *>(u"lbCount"_s)->text(); };
    QCOMPARE(total(), u"Total:%1"_s.arg(gridOf(form)->model()->rowCount()));
    form.filterEdit()->setText(u"img_0005"_s);
    QCOMPARE(total(), u"Total:1"_s);
    form.filterEdit()->setText(u"nothing of the kind"_s);
    QVERIFY(!gridOf(form)->isVisible());
    QCOMPARE(form.findChild<QLabel *>(u"lbStateTitle"_s)->text(), u"Nothing matches."_s);
    QVERIFY(!form.exportAction()->isEnabled());
    form.filterEdit()->clear();
    QVERIFY(gridOf(form)->isVisible());
}

void TestPhotosForm::missingContentIsTold()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    const auto film = cameraRollItems(backup->manifest(), CameraRollKind::Video).front();
    QVERIFY(QFile::remove(backup->manifest().filePath(film)));
    const PhotosMainForm photos(backup, CameraRollKind::Photo);
    const PhotosMainForm videos(backup, CameraRollKind::Video);
    const auto notice = [](const PhotosMainForm &form) {
        return form.findChild<QLabel *>(u"lbNotice"_s)->text();
    };
    QTRY_VERIFY(notice(videos).startsWith(u"1 "_s));
    QVERIFY(notice(photos).isEmpty());
}

void TestPhotosForm::exportsSelectionOrAll()
{
    const QByteArray first = pictureOf("JPEG", {30, 20}, Qt::red);
    const QByteArray second = pictureOf("JPEG", {30, 20}, Qt::blue);
    const SampleBackup sample(small({{camera, u"Media/DCIM/500APPLE/SAME.JPG"_s, first},
                                     {camera, u"Media/DCIM/501APPLE/SAME.JPG"_s, second}}));
    PhotosMainForm form(sample.opened(), CameraRollKind::Photo);
    form.filterEdit()->setText(u"SAME"_s);
    QTemporaryDir target;
    const QString renamed = u"\n\n1 file got another name:\n"
                            "- CameraRollDomain Media/DCIM/501APPLE/SAME.JPG → SAME(1).JPG"_s;
    for (const QString &said : {u"Successfully extracted 2 files."_s,
                                u"Successfully extracted 0 files.\n\n2 files were there already"_s}) {
        const AnswerBox done;
        QVERIFY(form.exportTo(target.path()));
        QCOMPARE(done.text(), said + renamed);
    }
    QSet<QByteArray> contents;
    for (const QString &name : {u"SAME.JPG"_s, u"SAME(1).JPG"_s}) {
        QFile file(target.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        contents.insert(file.readAll());
    }
    QCOMPARE(contents, QSet<QByteArray>({first, second}));

    gridOf(form)->setCurrentIndex(gridOf(form)->model()->index(1, 0));
    const QString chosen = gridOf(form)->currentIndex().data(Qt::ToolTipRole).toString();
    QTemporaryDir one;
    const AnswerBox done;
    QVERIFY(form.exportTo(one.path()));
    QVERIFY2(done.text().startsWith(u"Successfully extracted 1 files."_s), qPrintable(done.text()));
    QVERIFY2(chosen.contains(QDir(one.path()).entryList(QDir::Files).value(0)), qPrintable(chosen));
}

void TestPhotosForm::opensTheOneThatIsPicked()
{
    const SampleBackup sample(
        small({{camera, u"Media/DCIM/500APPLE/MINE_A.JPG"_s, pictureOf("JPEG", {30, 20}, Qt::red)},
               {camera, u"Media/DCIM/500APPLE/MINE_B.JPG"_s, pictureOf("JPEG", {30, 20}, Qt::blue)}}));
    PhotosMainForm form(sample.opened(), CameraRollKind::Photo);
    form.filterEdit()->setText(u"MINE"_s);
    for (int row = 0; row < 2; ++row) {
        const FakeDesktop desktop;
        gridOf(form)->setCurrentIndex(gridOf(form)->model()->index(row, 0));
        emit gridOf(form)->activated(gridOf(form)->currentIndex());
        QTRY_VERIFY(!desktop.asked().isEmpty());
        const QString name = gridOf(form)->currentIndex().data().toString();
        QVERIFY2(desktop.asked().endsWith(name), qPrintable(desktop.asked()));
    }
}

/// What a desktop would run is no photo, whatever it is called before its last ending.
void TestPhotosForm::opensByItsLastEndingAlone()
{
    const QByteArray picture = pictureOf("JPEG", {30, 20}, Qt::red);
    const SampleBackup sample(small({{camera, u"Media/DCIM/500APPLE/A.JPG.desktop"_s, picture},
                                     {camera, u"Media/DCIM/500APPLE/B.JPG.exe"_s, picture},
                                     {camera, u"Media/DCIM/500APPLE/C.desktop.JPG"_s, picture}}));
    const OpenBackupPtr backup = sample.opened();
    ItemModelPhotoIcon model(backup, CameraRollKind::Photo);
    model.setFilter(u"."_s);
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names.append(model.name(row));
    QVERIFY(names.contains(u"C.desktop.JPG"_s));
    QVERIFY(names.filter(u"A.JPG"_s).isEmpty() && names.filter(u"B.JPG"_s).isEmpty());

    // Not even when a view has listed one.
    const FileCatalogue &catalogue = backup->manifest().catalogue();
    FileOpener opener(backup, nullptr);
    for (const char *name : {"A.JPG.desktop", "B.JPG.exe"}) {
        const auto file = catalogue.find("CameraRollDomain", QByteArray("Media/DCIM/500APPLE/") + name);
        const AnswerBox box;
        opener.open(file, {});
        QVERIFY(box.text().contains(u"“%1” is not opened from here"_s.arg(QLatin1String(name))));
        QVERIFY_EXCEPTION_THROWN(openedCopyPath(backup->manifest(), file), Error);
    }
}

QTEST_MAIN(TestPhotosForm)
#include "tst_photos_form.moc"
