#include "screens/common/SystemFilePanels.h"

#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The toolkit's own panels, as they come where the desktop has none.
class SystemFilePanelsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theReferencePanelTakesOnePngOrJpegFile();
    void cancellingGivesNothing();
    void theSavePanelProposesTheNameAndAddsTheEnding();
    void theEndingIsNotAddedTwice();
    void panelsOpenWhereTheLastOneWasClosed();

private:
    /// While the next panel is open, calls `act` with it.
    void withPanel(const std::function<void(QFileDialog &)> &act);
    static void enter(QFileDialog &panel, const QString &name);

    std::unique_ptr<TemporaryHome> home;
    std::unique_ptr<QWidget> window;
    int panelsSeen = 0;
};

void SystemFilePanelsTest::init()
{
    home = std::make_unique<TemporaryHome>();
    window = std::make_unique<QWidget>();
    panelsSeen = 0;
    showWindow(*window, {1000, 700});
}

void SystemFilePanelsTest::withPanel(const std::function<void(QFileDialog &)> &act)
{
    auto *clock = new QTimer{window.get()};
    connect(clock, &QTimer::timeout, window.get(), [this, clock, act] {
        if (auto *panel = qobject_cast<QFileDialog *>(QApplication::activeModalWidget())) {
            clock->stop();
            ++panelsSeen;
            act(*panel);
        }
    });
    clock->start(0);
}

void SystemFilePanelsTest::enter(QFileDialog &panel, const QString &name)
{
    auto *field = panel.findChild<QLineEdit *>(u"fileNameEdit"_s);
    field->setText(name);
    QTest::keyClick(field, Qt::Key_Return);
}

void SystemFilePanelsTest::theReferencePanelTakesOnePngOrJpegFile()
{
    const QString path = samplePictures::write(home->path(u"我的 照片.JPG"_s),
                                               samplePictures::jpeg(samplePictures::picture({8, 8})));
    SystemFilePanels panels;
    QStringList filters;
    withPanel([&](QFileDialog &panel) {
        filters = panel.nameFilters();
        QCOMPARE(panel.fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(panel.acceptMode(), QFileDialog::AcceptOpen);
        enter(panel, path);
    });
    QCOMPARE(panels.chooseReferenceImage(window.get()), path);
    QCOMPARE(panelsSeen, 1);
    QCOMPARE(filters.size(), 1);
    for (const QString &ending : {u"*.png"_s, u"*.PNG"_s, u"*.jpg"_s, u"*.JPG"_s, u"*.jpeg"_s, u"*.JPEG"_s}) {
        QVERIFY2(filters.first().contains(ending), qPrintable(ending));
    }
    QVERIFY(!filters.first().contains(u"gif"_s, Qt::CaseInsensitive));
}

void SystemFilePanelsTest::cancellingGivesNothing()
{
    SystemFilePanels panels;
    withPanel([](QFileDialog &panel) { panel.reject(); });
    QVERIFY(!panels.chooseReferenceImage(window.get()).has_value());
    withPanel([](QFileDialog &panel) { panel.reject(); });
    QVERIFY(!panels.chooseCoverDestination(window.get(), u"Quilmora_1.png"_s).has_value());
    QCOMPARE(panelsSeen, 2);
}

void SystemFilePanelsTest::theSavePanelProposesTheNameAndAddsTheEnding()
{
    SystemFilePanels panels;
    QString proposed;
    QString title;
    withPanel([&](QFileDialog &panel) {
        title = panel.windowTitle();
        proposed = panel.findChild<QLineEdit *>(u"fileNameEdit"_s)->text();
        enter(panel, home->path(u"封面"_s));
    });
    QCOMPARE(panels.chooseCoverDestination(window.get(), u"Quilmora_20240101_101010.png"_s),
             home->path(u"封面.png"_s));
    QCOMPARE(title, u"保存封面图片"_s);
    QCOMPARE(proposed, u"Quilmora_20240101_101010.png"_s);
}

void SystemFilePanelsTest::theEndingIsNotAddedTwice()
{
    SystemFilePanels panels;
    withPanel([&](QFileDialog &panel) { enter(panel, home->path(u"A.PNG"_s)); });
    QCOMPARE(panels.chooseCoverDestination(window.get(), u"x.png"_s), home->path(u"A.PNG"_s));
}

void SystemFilePanelsTest::panelsOpenWhereTheLastOneWasClosed()
{
    const QString path = samplePictures::write(home->path(u"deep/er/a.png"_s),
                                               samplePictures::png(samplePictures::picture({8, 8})));
    SystemFilePanels panels;
    withPanel([&](QFileDialog &panel) { enter(panel, path); });
    QCOMPARE(panels.chooseReferenceImage(window.get()), path);
    QString folder;
    withPanel([&](QFileDialog &panel) {
        folder = panel.directory().absolutePath();
        panel.reject();
    });
    panels.chooseReferenceImage(window.get());
    QCOMPARE(folder, home->path(u"deep/er"_s));
}

int main(int argc, char *argv[])
{
    return runScreenTest<SystemFilePanelsTest>(argc, argv);
}

#include "SystemFilePanelsTest.moc"
