#include "ui/dialogs/SystemFileDialogs.h"

#include "support/SamplePictures.h"
#include "support/ScreenTest.h"

#include <QAbstractButton>
#include <QDirIterator>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>
#include <QTimer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// Qt's own panels, as they come where the desktop has none.
class SystemFileDialogsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qDeleteAll(findChildren<QTimer *>());
        m_home = std::make_unique<TemporaryHome>();
        m_window = std::make_unique<QWidget>();
        m_panelsSeen = 0;
        showWindow(*m_window, {1000, 700});
    }

    void theReferencePanelTakesOnePngOrJpegFile()
    {
        const QString path = samplePictures::write(m_home->path(u"我的 照片.JPG"_s),
                                                   samplePictures::jpeg(samplePictures::picture({8, 8})));
        QStringList filters;
        withPanel([&](QFileDialog &panel) {
            filters = panel.nameFilters();
            QCOMPARE(panel.fileMode(), QFileDialog::ExistingFile);
            QCOMPARE(panel.acceptMode(), QFileDialog::AcceptOpen);
            enter(panel, path);
        });
        QCOMPARE(m_panels.chooseReferenceImage(m_window.get()), path);
        QCOMPARE(m_panelsSeen, 1);
        QCOMPARE(filters.size(), 1);
        for (const QString &ending :
             {u"*.png"_s, u"*.PNG"_s, u"*.jpg"_s, u"*.JPG"_s, u"*.jpeg"_s, u"*.JPEG"_s}) {
            QVERIFY2(filters.first().contains(ending), qPrintable(ending));
        }
        QVERIFY(!filters.first().contains(u"gif"_s, Qt::CaseInsensitive));
    }

    void cancellingGivesNothing()
    {
        withPanel([](QFileDialog &panel) {
            // With completions, the window stays without keyboard after Return while a screen reader runs.
            QVERIFY(nameField(panel)->completer() == nullptr);
            panel.reject();
        });
        QVERIFY(!m_panels.chooseReferenceImage(m_window.get()).has_value());
        withPanel([](QFileDialog &panel) { panel.reject(); });
        QVERIFY(!m_panels.chooseCoverDestination(m_window.get(), u"Quilmora_1.png"_s).has_value());
        QCOMPARE(m_panelsSeen, 2);
    }

    void theSavePanelProposesTheNameAndAddsTheEnding()
    {
        QString proposed;
        QString title;
        withPanel([&](QFileDialog &panel) {
            title = panel.windowTitle();
            proposed = nameField(panel)->text();
            enter(panel, m_home->path(u"封面"_s));
        });
        QCOMPARE(m_panels.chooseCoverDestination(m_window.get(), u"Quilmora_20240101_101010.png"_s),
                 m_home->path(u"封面.png"_s));
        QCOMPARE(title, u"保存封面图片"_s);
        QCOMPARE(proposed, u"Quilmora_20240101_101010.png"_s);
        // An ending that is there is not added again.
        withPanel([&](QFileDialog &panel) { enter(panel, m_home->path(u"A.PNG"_s)); });
        QCOMPARE(m_panels.chooseCoverDestination(m_window.get(), u"x.png"_s), m_home->path(u"A.PNG"_s));
    }

    void aWholeNameIsAskedAboutOnce()
    {
        const QString existing = samplePictures::write(m_home->path(u"mine.png"_s), "former");
        withPanel([&](QFileDialog &panel) {
            withQuestion([&](QMessageBox &question) {
                withQuestion([](QMessageBox &another) { another.reject(); });
                click(question.button(QMessageBox::Yes));
            });
            enter(panel, existing);
        });
        QCOMPARE(m_panels.chooseCoverDestination(m_window.get(), u"x.png"_s), existing);
        QCOMPARE(m_panelsSeen, 2);
    }

    void aFileThatTheAddedEndingNamesIsAskedAbout()
    {
        for (const QString &entered : {u"<b>封面.jpg"_s, u"<b>封面"_s}) {
            // Without a button by the Escape key.
            for (const QString &button : {u"替换"_s, u"取消"_s, QString{}}) {
                init();
                const bool replaces = button == u"替换"_s;
                const QString existing = samplePictures::write(m_home->path(entered + u".png"_s), "former");
                QString text;
                QString keptName;
                Qt::TextFormat format = Qt::AutoText;
                withPanel([&](QFileDialog &panel) {
                    enter(panel, m_home->path(entered));
                    withQuestion([&](QMessageBox &question) {
                        text = question.text();
                        format = question.textFormat();
                        if (!replaces) {
                            withPanel([&](QFileDialog &again) {
                                keptName = nameField(again)->text();
                                again.reject();
                            });
                        }
                        if (button.isEmpty()) {
                            QTest::keyClick(&question, Qt::Key_Escape);
                        }
                        for (QAbstractButton *shown : question.buttons()) {
                            if (shown->text() == button) {
                                click(shown);
                            }
                        }
                    });
                });
                QCOMPARE(m_panels.chooseCoverDestination(m_window.get(), u"x.png"_s),
                         replaces ? std::optional{existing} : std::nullopt);
                QCOMPARE(m_panelsSeen, replaces ? 2 : 3);
                QCOMPARE(keptName, replaces ? QString{} : entered + u".png"_s);
                QCOMPARE(text, u"“%1.png”已存在。要替换它吗？"_s.arg(entered));
                QCOMPARE(format, Qt::PlainText);
            }
        }
    }

    void anAskerThatGoesGetsNothing()
    {
        enum class Moment { opening, saving, question };
        for (const auto moment : {Moment::opening, Moment::saving, Moment::question}) {
            for (const bool withWindow : {false, true}) {
                init();
                const QString existing = samplePictures::write(m_home->path(u"a.jpg.png"_s), "former");
                QPointer<QWidget> asker = new QWidget{m_window.get()};
                withPanel([&](QFileDialog &panel) {
                    if (moment == Moment::question) {
                        enter(panel, m_home->path(u"a.jpg"_s));
                        withQuestion([&](QMessageBox &) { remove(asker, withWindow); });
                    } else {
                        panel.selectFile(existing);
                        remove(asker, withWindow);
                    }
                });
                const auto path = moment == Moment::opening
                                      ? m_panels.chooseReferenceImage(asker)
                                      : m_panels.chooseCoverDestination(asker, u"x.png"_s);
                QVERIFY(asker.isNull());
                QVERIFY(!path.has_value());
                QCOMPARE(m_panelsSeen, moment == Moment::question ? 2 : 1);
                QVERIFY(QApplication::activeModalWidget() == nullptr);
            }
        }
    }

    void kindsOfFilesAreNamedInChinese()
    {
        const QStringList names{u"a.png"_s, u"a.JPG"_s, u"a.jpe"_s, u"a.txt"_s, u"a"_s, u"folder"_s};
        for (const QString &name : names) {
            samplePictures::write(m_home->path(name + (name == u"folder"_s ? u"/a.png"_s : QString{})),
                                  "content");
        }
        QStringList kinds;
        withPanel([&](QFileDialog &panel) {
            panel.setDirectory(m_home->path());
            const auto *files = panel.findChild<QFileSystemModel *>();
            for (const QString &name : names) {
                kinds.append(files->type(files->index(m_home->path(name))));
            }
            panel.reject();
        });
        QVERIFY(!m_panels.chooseReferenceImage(m_window.get()).has_value());
        QCOMPARE(kinds, (QStringList{u"PNG 图片"_s, u"JPEG 图片"_s, u"JPEG 图片"_s, u"TXT 文件"_s, u"文件"_s,
                                     u"文件夹"_s}));
    }

    void panelsOpenWhereTheLastOneWasClosedAndWriteNoSettings()
    {
        const QString path =
            samplePictures::writePng(m_home->path(u"deep/er/a.png"_s), samplePictures::picture({8, 8}));
        withPanel([&](QFileDialog &panel) { enter(panel, path); });
        QCOMPARE(m_panels.chooseReferenceImage(m_window.get()), path);
        QString folder;
        withPanel([&](QFileDialog &panel) {
            folder = panel.directory().absolutePath();
            m_window.reset();
        });
        QVERIFY(!m_panels.chooseReferenceImage(m_window.get()).has_value());
        QCOMPARE(folder, m_home->path(u"deep/er"_s));
        QDirIterator files{sharedSettings().path(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories};
        QVERIFY2(!files.hasNext(), qPrintable(files.next()));
    }

    void settingsOfOtherProgramsAreNotRead()
    {
        const QByteArray content = "[FileDialog]\nlastVisited=file:///usr\nviewMode=List\n";
        const QString file = samplePictures::write(sharedSettings().filePath(), content);
        QFileDialog::ViewMode mode = QFileDialog::List;
        withPanel([&](QFileDialog &panel) {
            mode = panel.viewMode();
            panel.reject();
        });
        QVERIFY(!m_panels.chooseReferenceImage(m_window.get()).has_value());
        QCOMPARE(mode, QFileDialog::Detail);
        QFile kept{file};
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), content);
        // Everything else reads them still.
        QCOMPARE(QSettings(QSettings::UserScope, u"QtProject"_s).value(u"FileDialog/viewMode"_s), u"List"_s);
        QVERIFY(QFile::remove(file));
    }

private:
    /// While the next panel is open, calls `act` with it.
    void withPanel(const std::function<void(QFileDialog &)> &act) { whenOpen<QFileDialog>(act); }
    /// The same with the question that may come behind it.
    void withQuestion(const std::function<void(QMessageBox &)> &act) { whenOpen<QMessageBox>(act); }

    template <typename Dialog>
    void whenOpen(const std::function<void(Dialog &)> &act)
    {
        auto *clock = new QTimer{this};
        connect(clock, &QTimer::timeout, this, [this, clock, act] {
            if (auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget())) {
                clock->stop();
                clock->deleteLater();
                ++m_panelsSeen;
                act(*dialog);
            }
        });
        clock->start(0);
    }

    static QLineEdit *nameField(const QFileDialog &panel)
    {
        return panel.findChild<QLineEdit *>(u"fileNameEdit"_s);
    }

    static void enter(QFileDialog &panel, const QString &name)
    {
        QLineEdit *field = nameField(panel);
        field->setText(name);
        QTest::keyClick(field, Qt::Key_Return);
    }

    void remove(QWidget *asker, bool withWindow)
    {
        if (withWindow) {
            m_window.reset();
        } else {
            delete asker;
        }
    }

    /// The settings of Qt itself, which all its programs share.
    static QFileInfo sharedSettings()
    {
        return QFileInfo{QSettings{QSettings::UserScope, u"QtProject"_s}.fileName()};
    }

    SystemFileDialogs m_panels;
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<QWidget> m_window;
    int m_panelsSeen = 0;
};

QUILMORA_TEST(SystemFileDialogsTest, runScreenTest)
#include "SystemFileDialogsTest.moc"
