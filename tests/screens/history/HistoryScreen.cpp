#include "HistoryScreen.h"

#include "platform/DecimalText.h"
#include "store/SqliteConnection.h"
#include "support/DatabaseFile.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QAbstractButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora::test
{

HistoryScreen::HistoryScreen() : database{home.path(u"data"_s)}
{
    auto *column = new QVBoxLayout{&window};
    column->setContentsMargins(0, 0, 0, 0);
}

void HistoryScreen::open(QSize size)
{
    view = std::make_unique<HistoryListView>(database, panels, &window);
    window.layout()->addWidget(view.get());
    showWindow(window, size);
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
    return QTest::qWaitFor([this] { return grid() == nullptr || grid()->isFilled(); });
}

qint64 HistoryScreen::addRow(const QString &prompt, const QString &imagePath, double createdAt,
                             const QString &modelID)
{
    const QString sql = u"INSERT INTO history (prompt, image_path, created_at, model_id) VALUES ("_s +
                        SqliteConnection::quoted(prompt) + u", "_s + SqliteConnection::quoted(imagePath) +
                        u", "_s + shortestDecimal(createdAt) + u", "_s + SqliteConnection::quoted(modelID) +
                        u"); SELECT last_insert_rowid();"_s;
    return databaseFile::run(home.path(u"data/quilmora.db"_s), sql.toUtf8())
        .constFirst()
        .constFirst()
        .toLongLong();
}

QString HistoryScreen::coverFile(const QString &name) const
{
    return home.path(u"Pictures/Quilmora/coverimg/"_s + name);
}

void HistoryScreen::writeCover(const QString &name, QSize size, const QColor &color) const
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(color);
    samplePictures::write(coverFile(name), samplePictures::png(image));
}

QString HistoryScreen::addCover(const QString &name, QSize size, double createdAt, const QColor &color)
{
    writeCover(name, size, color);
    addRow(u"提示词 "_s + name, u"~/Pictures/Quilmora/coverimg/"_s + name, createdAt);
    return coverFile(name);
}

void HistoryScreen::addCovers(int count)
{
    constexpr double newest = 1.7e9;
    for (int number = 0; number < count; ++number) {
        addCover(u"%1.png"_s.arg(number), {16, 9}, newest - number);
    }
}

QAccessibleInterface *HistoryScreen::tile(int position)
{
    return accessible::interfaceOf(grid())->child(position);
}

QRect HistoryScreen::tileRect(int position)
{
    return grid()->visualRect(grid()->model()->index(position, 0));
}

void HistoryScreen::clickTile(int position)
{
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, tileRect(position).center());
}

QImage HistoryScreen::picture()
{
    return screenCapture::capture(grid()->viewport(), grid()->devicePixelRatioF());
}

void HistoryScreen::refresh()
{
    click(accessible::find<QAbstractButton>(&window, u"刷新"_s));
}

} // namespace quilmora::test
