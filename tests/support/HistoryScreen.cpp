#include "support/HistoryScreen.h"

#include "support/DatabaseFile.h"
#include "support/HistoryRows.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QAbstractButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora::test {

QString HistoryScreen::storedPath(const QString &name) { return u"~/Pictures/Quilmora/coverimg/"_s + name; }

QString HistoryScreen::databasePath() const { return home.path(u"data/quilmora.db"_s); }

HistoryScreen::HistoryScreen() : database{home.path(u"data"_s), home.path(u"Pictures/Quilmora/coverimg"_s)}
{
    auto *column = new QVBoxLayout{&window};
    column->setContentsMargins(0, 0, 0, 0);
}

void HistoryScreen::build()
{
    view = std::make_unique<HistoryListView>(database, panels, thumbnails, &window);
    window.layout()->addWidget(view.get());
}

void HistoryScreen::buildAndShow(QSize size)
{
    build();
    showWindow(window, size);
}

void HistoryScreen::open(QSize size)
{
    buildAndShow(size);
    if (!waitUntilFilled()) {
        qFatal("The pictures do not come");
    }
}

bool HistoryScreen::waitUntilFilled()
{
    // Painted at least once, so that what changed has been seen.
    if (grid() != nullptr) {
        grid()->viewport()->repaint();
    }
    // Slow machines and instrumented programs take their time.
    constexpr int patience = 60'000;
    return QTest::qWaitFor([this] { return grid() == nullptr || grid()->isFilled(); }, patience);
}

qint64 HistoryScreen::addRow(const QString &prompt, const QString &imagePath, double createdAt,
                             const QString &modelID) const
{
    const QString sql =
        historyRows::insertion(prompt, imagePath, createdAt, modelID) + u" SELECT last_insert_rowid();"_s;
    return databaseFile::run(databasePath(), sql.toUtf8()).constFirst().constFirst().toLongLong();
}

QString HistoryScreen::coverFile(const QString &name) const
{
    return home.path(u"Pictures/Quilmora/coverimg/"_s + name);
}

void HistoryScreen::writeCover(const QString &name, QSize size, const QColor &color) const
{
    samplePictures::writePng(coverFile(name), samplePictures::plain(size, color));
}

QString HistoryScreen::addCover(const QString &name, QSize size, double createdAt, const QColor &color) const
{
    writeCover(name, size, color);
    addRow(u"提示词 "_s + name, storedPath(name), createdAt);
    return coverFile(name);
}

void HistoryScreen::addCovers(int count) const
{
    constexpr double newest = 1.7e9;
    // At once: each by itself would wait for the disk.
    QString sql = u"BEGIN;"_s;
    for (int number = 0; number < count; ++number) {
        const QString name = u"%1.png"_s.arg(number);
        writeCover(name, {16, 9}, Qt::red);
        sql += historyRows::insertion(u"提示词 "_s + name, storedPath(name), newest - number, u"模型"_s);
    }
    databaseFile::run(databasePath(), QString{sql + u"COMMIT;"_s}.toUtf8());
}

QAccessibleInterface *HistoryScreen::tile(int position)
{
    return accessible::interfaceOf(grid())->child(position);
}

QRect HistoryScreen::tileRect(int position)
{
    return grid()->visualRect(grid()->model()->index(position, 0));
}

QRect HistoryScreen::squareRect(int position)
{
    const QRect tile = tileRect(position);
    return {tile.topLeft(), QSize{tile.width(), tile.width()}};
}

void HistoryScreen::clickTile(int position)
{
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, tileRect(position).center());
}

QImage HistoryScreen::picture()
{
    return screenCapture::capture(grid()->viewport(), grid()->devicePixelRatioF());
}

QColor HistoryScreen::middleColor(int position)
{
    return screenCapture::colorAt(picture(), squareRect(position).center());
}

bool HistoryScreen::opensPreview(int position)
{
    clickTile(position);
    return QTest::qWaitFor([] { return preview() != nullptr; });
}

bool HistoryScreen::closesPreview()
{
    QTest::keyClick(preview(), Qt::Key_Escape);
    return QTest::qWaitFor([] { return preview() == nullptr; });
}

void HistoryScreen::refresh() { click(accessible::find<QAbstractButton>(&window, texts::refresh)); }

} // namespace quilmora::test
