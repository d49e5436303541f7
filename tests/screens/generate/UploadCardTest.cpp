#include "screens/generate/UploadCard.h"

#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFilePanels.h"

#include <QAbstractButton>
#include <QFile>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QString &cardTitle()
{
    static const QString title = u"人脸形象（必填）"_s;
    return title;
}

constexpr qsizetype megabyte = 1'048'576;
constexpr qsizetype tenMegabytes = 10 * megabyte;

} // namespace

class UploadCardTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void aPickedPictureIsShownAndCanBeRemoved();
    void aFileOfExactlyTenMegabytesIsTaken();
    void aByteMoreIsRefused();
    void fifteenMegabytesAreRefusedAndTheFormerPictureStays();
    void cancellingClearsTheErrorAndKeepsThePicture();
    void removingKeepsTheErrorLine();
    void removingKeepsTheFocusOnTheCard();
    void aNewPickClearsTheErrorBeforeThePanelOpens();
    void aFileThatIsNoPictureEmptiesTheCardWithoutAMessage();
    void aFileThatDisappearsIsReportedInChinese();
    void aFolderEmptiesTheCardWithoutAMessage();
    void aLinkThatLeadsNowhereEmptiesTheCardWithoutAMessage();
    void aLinkToAPictureIsFollowed();
    void theFaceIsNamedAfterTheCard();
    void theFaceSaysWhichFileItShows();
    void theRemoveButtonSaysWhoseItIs();
    void theSpaceKeyOpensThePanel();
    void aCardThatGoesWhileThePanelIsOpenLoadsNothing();

private:
    QAbstractButton *face() { return accessible::find<QAbstractButton>(window.get(), cardTitle()); }
    QAbstractButton *removeButton() { return accessible::find<QAbstractButton>(window.get(), u"移除"_s); }
    /// Every visible text beside the card's own.
    QStringList otherTexts();
    void pick(const ScriptedFilePanels::Answer &answer);
    QString file(const QString &name, const QByteArray &bytes);

    const TemporaryHome home;
    std::unique_ptr<ScriptedFilePanels> panels;
    std::unique_ptr<QWidget> window;
    UploadCard *card = nullptr;
};

void UploadCardTest::init()
{
    panels = std::make_unique<ScriptedFilePanels>();
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    card = new UploadCard{cardTitle(), u"square.and.arrow.up"_s, *panels, window.get()};
    column->addWidget(card);
    showWindow(*window, {480, 320});
}

QStringList UploadCardTest::otherTexts()
{
    QStringList texts = accessible::names(window.get());
    texts.removeAll(cardTitle());
    texts.removeAll(u"移除"_s);
    return texts;
}

void UploadCardTest::pick(const ScriptedFilePanels::Answer &answer)
{
    panels->answerReference(answer);
    click(face());
}

QString UploadCardTest::file(const QString &name, const QByteArray &bytes)
{
    return samplePictures::write(home.path(name), bytes);
}

void UploadCardTest::aPickedPictureIsShownAndCanBeRemoved()
{
    QVERIFY(card->image().isNull());
    QVERIFY(removeButton() == nullptr);
    const QImage picture = samplePictures::picture({60, 40});
    pick(file(u"a.png"_s, samplePictures::png(picture)));
    QCOMPARE(card->image().convertToFormat(QImage::Format_RGB32), picture);
    QVERIFY(removeButton() != nullptr);
    QVERIFY(otherTexts().isEmpty());
    click(removeButton());
    QVERIFY(card->image().isNull());
    QVERIFY(removeButton() == nullptr);
}

void UploadCardTest::aFileOfExactlyTenMegabytesIsTaken()
{
    pick(file(u"exact.png"_s, samplePictures::pngOfSize(tenMegabytes)));
    QVERIFY(!card->image().isNull());
    QVERIFY(otherTexts().isEmpty());
}

void UploadCardTest::aByteMoreIsRefused()
{
    pick(file(u"more.png"_s, samplePictures::pngOfSize(tenMegabytes + 1)));
    QVERIFY(card->image().isNull());
    QCOMPARE(otherTexts(), QStringList{u"图片过大（10.0M），不能超过 10M"_s});
}

void UploadCardTest::fifteenMegabytesAreRefusedAndTheFormerPictureStays()
{
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    const qint64 former = card->image().cacheKey();
    pick(file(u"large.png"_s, samplePictures::pngOfSize(15 * megabyte)));
    QCOMPARE(otherTexts(), QStringList{u"图片过大（15.0M），不能超过 10M"_s});
    QCOMPARE(card->image().cacheKey(), former);
    QVERIFY(removeButton() != nullptr);
}

void UploadCardTest::cancellingClearsTheErrorAndKeepsThePicture()
{
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    const qint64 former = card->image().cacheKey();
    pick(home.path(u"missing.png"_s));
    QCOMPARE(otherTexts().size(), 1);
    pick(std::nullopt);
    QVERIFY(otherTexts().isEmpty());
    QCOMPARE(card->image().cacheKey(), former);
}

void UploadCardTest::removingKeepsTheErrorLine()
{
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    pick(home.path(u"missing.png"_s));
    const QStringList before = otherTexts();
    click(removeButton());
    QVERIFY(card->image().isNull());
    QCOMPARE(otherTexts(), before);
    QCOMPARE(before.size(), 1);
}

void UploadCardTest::removingKeepsTheFocusOnTheCard()
{
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    removeButton()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(removeButton(), Qt::Key_Space);
    QVERIFY(card->image().isNull());
    QVERIFY(face()->hasFocus());
}

void UploadCardTest::aNewPickClearsTheErrorBeforeThePanelOpens()
{
    pick(home.path(u"missing.png"_s));
    QStringList duringPanel{u"the panel did not open"_s};
    panels->answerReference(std::nullopt, [&] { duringPanel = otherTexts(); });
    click(face());
    QVERIFY(duringPanel.isEmpty());
}

void UploadCardTest::aFileThatIsNoPictureEmptiesTheCardWithoutAMessage()
{
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    pick(file(u"text.png"_s, "not a picture"));
    QVERIFY(card->image().isNull());
    QVERIFY(otherTexts().isEmpty());
    QVERIFY(removeButton() == nullptr);
}

void UploadCardTest::aFileThatDisappearsIsReportedInChinese()
{
    const QString path = file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40})));
    pick(path);
    const qint64 former = card->image().cacheKey();
    panels->answerReference(path, [&] { QVERIFY(QFile::remove(path)); });
    click(face());
    QCOMPARE(otherTexts(), QStringList{u"读取文件失败：此文件或目录不存在"_s});
    QCOMPARE(card->image().cacheKey(), former);
}

void UploadCardTest::aFolderEmptiesTheCardWithoutAMessage()
{
    pick(home.path());
    QVERIFY(card->image().isNull());
    QVERIFY(otherTexts().isEmpty());
}

void UploadCardTest::aLinkThatLeadsNowhereEmptiesTheCardWithoutAMessage()
{
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    const QString link = home.path(u"dangling.png"_s);
    QVERIFY(QFile::link(home.path(u"missing.png"_s), link));
    pick(link);
    QVERIFY(card->image().isNull());
    QVERIFY(otherTexts().isEmpty());
}

void UploadCardTest::aLinkToAPictureIsFollowed()
{
    const QString link = home.path(u"link.png"_s);
    QVERIFY(QFile::link(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))), link));
    pick(link);
    QCOMPARE(card->image().size(), QSize(60, 40));
    const QString large = home.path(u"link to large.png"_s);
    QVERIFY(QFile::link(file(u"large.png"_s, samplePictures::pngOfSize(15 * megabyte)), large));
    pick(large);
    QCOMPARE(otherTexts(), QStringList{u"图片过大（15.0M），不能超过 10M"_s});
}

void UploadCardTest::theFaceIsNamedAfterTheCard()
{
    const QAccessibleInterface *interface = accessible::interfaceOf(face());
    QCOMPARE(interface->text(QAccessible::Name), cardTitle());
    QCOMPARE(interface->role(), QAccessible::PushButton);
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    QCOMPARE(accessible::interfaceOf(face())->text(QAccessible::Name), cardTitle());
}

void UploadCardTest::theFaceSaysWhichFileItShows()
{
    const auto description = [this] {
        return accessible::interfaceOf(face())->text(QAccessible::Description);
    };
    QCOMPARE(description(), u"点击上传"_s);
    pick(file(u"照片 1.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    QCOMPARE(description(), u"已选择 照片 1.png"_s);
    pick(file(u"large.png"_s, samplePictures::pngOfSize(15 * megabyte)));
    QCOMPARE(description(), u"已选择 照片 1.png"_s);
    click(removeButton());
    QCOMPARE(description(), u"点击上传"_s);
    pick(file(u"照片 2.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    QCOMPARE(description(), u"已选择 照片 2.png"_s);
    pick(file(u"text.png"_s, "not a picture"));
    QCOMPARE(description(), u"点击上传"_s);
}

void UploadCardTest::theRemoveButtonSaysWhoseItIs()
{
    pick(file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40}))));
    QCOMPARE(accessible::interfaceOf(removeButton())->text(QAccessible::Description), cardTitle());
}

void UploadCardTest::theSpaceKeyOpensThePanel()
{
    face()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(face(), Qt::Key_Space);
    QCOMPARE(panels->referencePanelCount(), 1);
}

void UploadCardTest::aCardThatGoesWhileThePanelIsOpenLoadsNothing()
{
    const QString path = file(u"a.png"_s, samplePictures::png(samplePictures::picture({60, 40})));
    QPointer<UploadCard> watched{card};
    // Asked through the card's own button as it is: the click is delivered by a posted event, so that
    // destroying the card inside the panel does not pull the button away from under the mouse event.
    panels->answerReference(path, [&] { delete card; });
    QMetaObject::invokeMethod(face(), &QAbstractButton::click, Qt::QueuedConnection);
    QTRY_VERIFY(watched.isNull());
    QCOMPARE(panels->referencePanelCount(), 1);
}

int main(int argc, char *argv[])
{
    return runScreenTest<UploadCardTest>(argc, argv);
}

#include "UploadCardTest.moc"
