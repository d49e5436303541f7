#include "screens/history/ImagePreviewView.h"

#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFileDialogs.h"
#include "support/Texts.h"
#include "ui/theme/Fonts.h"
#include "ui/widgets/ElidedText.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class ImagePreviewViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_panels = std::make_unique<ScriptedFileDialogs>();
        m_file = m_home->path(u"cover.png"_s);
        m_closed = 0;
    }

    void cleanup()
    {
        m_view.reset();
        m_home.reset();
    }

    void aRemovedFileLeavesOutThePictureAndSavesNothing()
    {
        open({}, u"提示词"_s, {});
        QVERIFY(find(u"— · 2025-03-05 09:07"_s) != nullptr);
        open({});
        QVERIFY(picture() == nullptr);
        QVERIFY(find(texts::close) != nullptr);
        QVERIFY(find(u"提示词"_s) != nullptr);
        QVERIFY(find(u"模型 · 2025-03-05 09:07"_s) != nullptr);
        QVERIFY(find(texts::closePreview) != nullptr);
        m_panels->answerDestination(m_home->path(u"out.png"_s));
        click(find(texts::savePicture));
        QCOMPARE(m_panels->proposedNames(), QStringList{});
        QVERIFY(!QFile::exists(m_home->path(u"out.png"_s)));
        QCOMPARE(m_closed, 0);
        // Nothing stands in the picture's place: what is left lies together in the middle.
        const int top = placeOf(find(texts::close)).top();
        const int bottom = placeOf(find(texts::closePreview)).bottom();
        QVERIFY(std::abs((top - 0) - (759 - bottom)) <= 2);
        QVERIFY(bottom - top < 200);
    }

    void aLongPromptLeavesLessHeightToThePicture()
    {
        open({900, 1600}, u"一行"_s);
        const int tall = picture()->height();
        m_view.reset();
        open({900, 1600}, u"一\n二\n三\n四"_s);
        const int lower = picture()->height();
        QVERIFY(lower < tall);
        QCOMPARE(tall - lower, 2 * ElidedText::heightOfLines(systemFont(14), 1));
        QVERIFY(placeOf(find(texts::close)).top() >= 40);
        QVERIFY(placeOf(find(texts::closePreview)).bottom() < 720);
        QVERIFY(std::abs(picture()->width() - lower * 900 / 1600) <= 1);
    }

    void whatCloses()
    {
        open({2848, 1600});
        for (const QString &name : {texts::cover, u"提示词"_s, u"模型 · 2025-03-05 09:07"_s}) {
            clickAt(placeOf(find(name)).center());
            QVERIFY2(m_closed == 0, qPrintable(name));
        }
        clickAt({12, 400});
        QCOMPARE(m_closed, 1);
        // Beside the line of the prompt.
        const QPoint prompt = placeOf(find(u"提示词"_s)).center();
        clickAt(prompt + QPoint{60, 0});
        QCOMPARE(m_closed, 2);
        clickAt(prompt - QPoint{60, 0});
        QCOMPARE(m_closed, 3);
        click(find(texts::close));
        QCOMPARE(m_closed, 4);
        click(find(texts::closePreview));
        QCOMPARE(m_closed, 5);
    }

    void aPressThatIsLetGoElsewhereDoesNotClose()
    {
        open({2848, 1600});
        const QPoint onPicture = placeOf(picture()).center();
        QTest::mousePress(m_view.get(), Qt::LeftButton, {}, {12, 400});
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, onPicture);
        QTest::mousePress(m_view.get(), Qt::RightButton, {}, {12, 400});
        QTest::mouseRelease(m_view.get(), Qt::RightButton, {}, {12, 400});
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, {12, 400});
        QCOMPARE(m_closed, 0);
    }

    void savingWritesAPngOfThePicture()
    {
        open({64, 36});
        QCOMPARE(accessible::focusOrder(m_view.get()),
                 (QStringList{texts::close, texts::savePicture, texts::closePreview}));
        const QString out = m_home->path(u"导出 '封面'.png"_s);
        samplePictures::write(out, "an older file");
        m_panels->answerDestination(out);
        click(find(texts::savePicture));
        QImage written;
        QVERIFY(written.load(out, "png"));
        QCOMPARE(written.convertToFormat(QImage::Format_RGB32),
                 samplePictures::inSrgb(samplePictures::picture({64, 36})));
        QCOMPARE(m_closed, 0);
        QVERIFY(QFile::exists(m_file));
        // The file is read anew.
        samplePictures::writePng(m_file, samplePictures::picture({32, 32}));
        m_panels->answerDestination(out);
        click(find(texts::savePicture));
        QCOMPARE(QImage{out}.size(), QSize(32, 32));
        // The time of creation.
        QCOMPARE(m_panels->proposedNames(), QStringList(2, u"Quilmora_20250305_090703.png"_s));
    }

    void aSaveThatIsCancelledOrFailsIsSilent()
    {
        open({64, 36});
        const QStringList before = QDir{m_home->path()}.entryList(QDir::AllEntries);
        m_panels->answerDestination(std::nullopt);
        m_panels->answerDestination(m_home->path(u"no/such/folder/out.png"_s));
        for (int times = 1; times <= 2; ++times) {
            click(find(texts::savePicture));
            QCOMPARE(m_panels->proposedNames().size(), times);
            QCOMPARE(QDir{m_home->path()}.entryList(QDir::AllEntries), before);
            QCOMPARE(m_closed, 0);
            QVERIFY(m_view->isVisible());
            QVERIFY(QApplication::activeModalWidget() == nullptr);
        }
    }

private:
    /// Shows the preview of a picture of that size; none for an empty size.
    void open(QSize size, const QString &prompt = u"提示词"_s, const QString &modelID = u"模型"_s)
    {
        if (!size.isEmpty()) {
            samplePictures::writePng(m_file, samplePictures::picture(size));
        }
        const QDateTime creation{{2025, 3, 5}, {9, 7, 3}};
        const HistoryRecord record{1, prompt, u"~/cover.png"_s,
                                   fromSecondsSince1970(static_cast<double>(creation.toSecsSinceEpoch())),
                                   modelID};
        m_view = std::make_unique<ImagePreviewView>(
            record, [this] { ++m_closed; }, *m_panels);
        showWindow(*m_view, {900, 760});
    }

    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return accessible::find<Widget>(m_view.get(), name);
    }
    QWidget *picture() { return find(texts::cover); }
    QRect placeOf(QWidget *widget) { return {widget->mapTo(m_view.get(), QPoint{}), widget->size()}; }

    void clickAt(QPoint place)
    {
        QWidget *hit = m_view->childAt(place);
        QWidget *target = hit != nullptr ? hit : m_view.get();
        QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFrom(m_view.get(), place));
    }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<ScriptedFileDialogs> m_panels;
    std::unique_ptr<ImagePreviewView> m_view;
    QString m_file;
    int m_closed = 0;
};

QUILMORA_TEST(ImagePreviewViewTest, runScreenTest)
#include "ImagePreviewViewTest.moc"
