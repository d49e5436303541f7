#include "model/VolcengineConfig.h"
#include "support/CornerShape.h"
#include "support/DatabaseFile.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/SettingsScreen.h"
#include "support/StandardOutput.h"
#include "ui/dialogs/Sheet.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPointer>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

QString missing(const QString &setting) { return u"请填写 "_s + setting; }

} // namespace

/// The settings as a user enters and saves them, and their numbers, read from what is drawn.
/// AccessibleTreeTest has the names of all pieces.
class SettingsViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<SettingsScreen>(); }
    void cleanup() { m_screen.reset(); }

    void aFreshUserSeesTheDefaultsAndAnEmptyKey()
    {
        QCOMPARE(accessible::focusOrder(&m_screen->window),
                 texts::settings + QStringList{texts::saveSettings});
        QCOMPARE(m_screen->values(), m_defaults);
        QCOMPARE(m_screen->field(texts::apiURL)->placeholderText(), VolcengineConfig::defaultURL());
        QCOMPARE(m_screen->field(texts::apiKey)->placeholderText(), u"Bearer 长效 API Key"_s);
        QCOMPARE(m_screen->field(texts::modelID)->placeholderText(), u"doubao-seedream-4-0-250828"_s);
    }

    void onlyTheKeyIsMasked()
    {
        m_screen->fill({u"secret"_s, u"secret"_s, u"secret"_s});
        for (const QString &name : texts::settings) {
            QLineEdit *field = m_screen->field(name);
            const bool isKey = name == texts::apiKey;
            QCOMPARE(field->echoMode(), isKey ? QLineEdit::Password : QLineEdit::Normal);
            QCOMPARE(field->displayText().contains(u"secret"_s), !isKey);
            const QAccessibleInterface *interface = accessible::interfaceOf(field);
            QCOMPARE(interface->state().passwordEdit, isKey);
            QCOMPARE(interface->text(QAccessible::Value).contains(u"secret"_s), !isKey);
            // Address and model are not composed either.
            QVERIFY(field->inputMethodHints().testFlags(Qt::ImhHiddenText | Qt::ImhPreferLatin) || isKey);
        }
        QVERIFY(m_screen->field(texts::apiURL)->inputMethodHints().testFlag(Qt::ImhUrlCharactersOnly));
    }

    void theFirstMissingValueIsReportedAndNothingIsStored()
    {
        const QString url = u"http://changed"_s;
        const QString blanks = u" \t\n\u3000\u00a0\u2028\u0085"_s;
        const QList<std::pair<QStringList, QString>> rows{
            {{{}, u"k"_s, u"m"_s}, texts::apiURL}, {{url, {}, u"m"_s}, texts::apiKey},
            {{url, u"k"_s, {}}, texts::modelID},   {{url, u"   "_s, u"m"_s}, texts::apiKey},
            {{{}, {}, u"m"_s}, texts::apiURL},     {{url, {}, {}}, texts::apiKey},
            {{{}, {}, {}}, texts::apiURL},         {{url, u"k"_s, blanks}, texts::modelID},
        };
        for (const auto &[values, setting] : rows) {
            m_screen->fill(values);
            m_screen->save();
            for (const QString &name : texts::settings) {
                QVERIFY2(m_screen->shows(missing(name)) == (name == setting), qPrintable(values.join(u'|')));
            }
            QVERIFY(openSheet() == nullptr);
            QCOMPARE(m_screen->stored(), m_defaults);
        }
        const QWidget *message = find(missing(texts::modelID));
        QCOMPARE(drawing().lookOf(missing(texts::modelID)),
                 Drawing::look(13, QFont::Normal, ColorRole::redText));
        QTRY_VERIFY(placement::gapBelow(card(), message) > 0);
        QTRY_VERIFY(placement::gapBelow(message, find(texts::saveSettings)) > 0);
    }

    void valuesAreStoredTrimmedWhileTheFieldsKeepThem()
    {
        const QStringList typed{u"http://host/path "_s, u"\u3000\tke y\u00a0"_s,
                                u" it's \"m\" & <b>\u2003"_s};
        const QStringList trimmed{u"http://host/path"_s, u"ke y"_s, u"it's \"m\" & <b>"_s};
        m_screen->fill(typed);
        m_screen->save();
        QCOMPARE(m_screen->stored(), trimmed);
        QVERIFY(SettingsScreen::closeAlert());
        QCOMPARE(m_screen->values(), typed);
        m_screen->appearAgain();
        QCOMPARE(m_screen->values(), trimmed);
        // A line break inside stays.
        typeInto(m_screen->field(texts::apiKey), u"a\nb\n"_s);
        m_screen->save();
        QCOMPARE(m_screen->stored().at(1), u"a\nb"_s);
        QVERIFY(SettingsScreen::closeAlert());
    }

    void theRefusedFieldIsMarkedUntilItsTextChanges()
    {
        QLineEdit *key = m_screen->field(texts::apiKey);
        const QString hint = u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s;
        const auto redPixels = [key] {
            return screenCapture::countIf(screenCapture::capture(key), [](const QColor &pixel) {
                return pixel.red() > 200 && pixel.green() < 150 && pixel.blue() < 150;
            });
        };
        const auto spoken = [key] {
            return accessible::interfaceOf(key)->text(QAccessible::Description);
        };
        QCOMPARE(redPixels(), 0);
        m_screen->save();
        QVERIFY(m_screen->shows(missing(texts::apiKey)));
        QVERIFY2(redPixels() > 2 * key->width(), qPrintable(QString::number(redPixels())));
        QCOMPARE(spoken(), u"无效。"_s + hint);
        // Also without the focus, and while the user looks at other fields.
        m_screen->field(texts::apiURL)->setFocus();
        QVERIFY(redPixels() > 2 * key->width());

        typeInto(key, u"k"_s);
        QCOMPARE(redPixels(), 0);
        QCOMPARE(spoken(), hint);
        QVERIFY2(m_screen->shows(missing(texts::apiKey)), "the message stays until the next save");
        m_screen->save();
        QVERIFY(!m_screen->shows(missing(texts::apiKey)));
        QVERIFY(SettingsScreen::closeAlert());
    }

    void theStoredValuesAreReadAtEveryAppearance()
    {
        typeInto(m_screen->field(texts::apiKey), u"not saved"_s);
        m_screen->database.saveConfig(u"http://elsewhere"_s, u"other"_s, u"model-2"_s);
        m_screen->appearAgain();
        QCOMPARE(m_screen->values(), (QStringList{u"http://elsewhere"_s, u"other"_s, u"model-2"_s}));
        // The defaults come back where there is nothing.
        m_screen->database.saveConfig({}, {}, {});
        m_screen->appearAgain();
        QCOMPARE(m_screen->values(), m_defaults);
    }

    void savingIsConfirmedUntilAKeyIsPressed()
    {
        m_screen->fill({u"u"_s, u"k"_s, u"m"_s});
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Space}) {
            m_screen->save();
            QTRY_VERIFY(openSheet() != nullptr);
            const QPointer<Sheet> alert{openSheet()};
            const QStringList names = accessible::names(alert);
            QVERIFY(names.contains(texts::saved) && names.contains(texts::savedMessage));
            QCOMPARE(alert->findChildren<QAbstractButton *>().size(), 1);
            auto *button = accessible::find<QAbstractButton>(alert, texts::confirm);
            const QImage face = screenCapture::capture(button->parentWidget());
            for (const QPoint corner : {face.rect().topLeft(), face.rect().topRight(),
                                        face.rect().bottomLeft(), face.rect().bottomRight()}) {
                QCOMPARE(face.pixelColor(corner).alpha(), 0);
            }
            QCOMPARE(face.pixelColor(face.width() / 2, 4), QColor(0xECECECU));
            QTRY_COMPARE(QApplication::focusWidget(), button);
            QTest::keyClick(QApplication::focusWidget(), key);
            QTRY_VERIFY(alert.isNull());
        }
    }

    void aFailedWriteIsConfirmedToo()
    {
        m_screen->fill({u"u"_s, u"k"_s, u"m"_s});
        databaseFile::run(m_screen->home.path(u"data/quilmora.db"_s), "DROP TABLE volc_config");
        QCOMPARE(standardOutputOf([this] { m_screen->save(); }),
                 QByteArray{"SQL 错误: no such table: volc_config\n"});
        QTRY_VERIFY(openSheet() != nullptr);
        QVERIFY(accessible::names(openSheet()).contains(texts::savedMessage));
        QVERIFY(SettingsScreen::closeAlert());
    }

    void titleAndCardHeader()
    {
        const QString interface = u"调用接口：POST /api/v3/images/generations"_s;
        const Drawing drawn = drawing();
        QCOMPARE(drawn.lookOf(texts::settingsHeading),
                 Drawing::look(16, QFont::DemiBold, ColorRole::primaryText));
        QCOMPARE(drawn.lookOf(interface), Drawing::look(11, QFont::Normal, ColorRole::secondaryText));
        QVERIFY(placement::gapBelow(find(texts::settingsHeading), find(interface)) >= 0);
        QCOMPARE(drawn.lookOf(u"功能设置"_s), Drawing::look(22, QFont::Bold, ColorRole::primaryText));
        const QWidget *label = find(u"功能设置"_s);
        QCOMPARE(placement::inWindow(label).left(), placement::inWindow(card()).left());
        // Below the title lie 4 more than below the card.
        QCOMPARE(placement::gapBelow(label, card()),
                 placement::gapBelow(card(), find(texts::saveSettings)) + 4);
        // As far below the title as the history has its covers, which lie 24 + 16 and the height of the title
        // below.
        QCOMPARE(placement::inWindow(label).top(), 24);
        QCOMPARE(placement::gapBelow(label, card()), 16);
    }

    void cardShape()
    {
        QCOMPARE(CornerShape{card()}.differenceFromCircle(12), QString{});
        QCOMPARE(screenCapture::colorAt(screenCapture::capture(card()), {10, 100}), QColor{Qt::white});
        QCOMPARE(placement::padding(card()->rect(), card()->childrenRect()), u"20, 20, 20, 20"_s);
        // As wide as the page without its margins, which are the same on both sides.
        const QRect place = placement::inWindow(card());
        QCOMPARE(place.left(), 1000 - place.right() - 1);
        m_screen->window.resize(1400, 643);
        QTRY_COMPARE(card()->width(), place.width() + 400);
    }

    void fieldGroups()
    {
        const QStringList hints{u"默认：https://ark.cn-beijing.volces.com/api/v3/images/generations"_s,
                                u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s,
                                u"如：doubao-seedream-4-0-250828、doubao-seedream-3-0-t2i-250415 等"_s};
        for (qsizetype i = 0; i < hints.size(); ++i) {
            const QString &label = texts::settings.at(i);
            const QString &hint = hints.at(i);
            auto *field = find<QLineEdit>(label);
            const QColor primary = themeColor(ColorRole::primaryText);
            const Drawing before{field->parentWidget()};
            QCOMPARE(before.lookOf(label), Drawing::look(13, QFont::Medium, primary));
            QCOMPARE(before.lookOf(hint), Drawing::look(11, QFont::Normal, ColorRole::secondaryText));
            const QWidget *title = find<QLabel>(label);
            QCOMPARE(placement::gapBelow(title, field), 6);
            QCOMPARE(placement::gapBelow(field, find(hint)), 6);
            QCOMPARE(placement::inWindow(title).left(), placement::inWindow(field).left());
            QCOMPARE(field->width(), card()->width() - 2 * 20);
            typeInto(field, u"x"_s);
            const Drawing typed{field};
            const QString shown = field->displayText();
            QCOMPARE(typed.lookOf(shown), Drawing::look(12, QFont::Normal, primary));
            typeInto(field, {});
            field->clearFocus();
            QCOMPARE(Drawing{field}.lookOf(field->placeholderText()),
                     Drawing::look(12, QFont::Normal, ColorRole::tertiaryText));
        }
    }

    void saveButton()
    {
        QWidget *button = find(texts::saveSettings);
        const Drawing drawn{button};
        QCOMPARE(drawn.lookOf(texts::saveSettings), Drawing::look(14, QFont::DemiBold, Qt::white));
        const QRectF symbol = drawn.symbol(u"checkmark.circle.fill"_s, 14, QFont::DemiBold, Qt::white);
        QVERIFY(!symbol.isNull());
        const QRectF text = drawn.placeOf(texts::saveSettings);
        QCOMPARE(qRound(text.left() - symbol.right()), 6);
        QCOMPARE(placement::padding(button->rect(), symbol.united(text)), u"16, 6, 16, 6"_s);
        QCOMPARE(screenCapture::colorAt(screenCapture::capture(button), {8, button->height() / 2.0}),
                 themeColor(ColorRole::accent));
        QCOMPARE(placement::inWindow(button).left(), placement::inWindow(card()).left());
    }

private:
    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return m_screen->find<Widget>(name);
    }
    QWidget *card() { return find(texts::settingsHeading)->parentWidget(); }
    Drawing drawing() { return Drawing{m_screen->view->widget()}; }

    const QStringList m_defaults{VolcengineConfig::defaultURL(), {}, VolcengineConfig::defaultModelID()};
    std::unique_ptr<SettingsScreen> m_screen;
};

QUILMORA_TEST(SettingsViewTest, runScreenTest)
#include "SettingsViewTest.moc"
