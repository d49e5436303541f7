#include "model/VolcengineConfig.h"
#include "support/DatabaseFile.h"
#include "support/ScreenCapture.h"
#include "support/SettingsScreen.h"
#include "support/StandardOutput.h"
#include "ui/dialogs/Sheet.h"

#include <QAbstractButton>
#include <QPointer>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

QString missing(const QString &setting)
{
    return u"请填写 "_s + setting;
}

} // namespace

/// The settings as a user enters and saves them. AccessibleTreeTest has the names of all pieces.
class SettingsViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<SettingsScreen>(); }
    void cleanup() { m_screen.reset(); }

    void theTabKeyFollowsTheForm()
    {
        QCOMPARE(accessible::focusOrder(&m_screen->window),
                 texts::settings + QStringList{texts::saveSettings});
    }

    void aFreshUserSeesTheDefaultsAndAnEmptyKey()
    {
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

    void theFirstMissingValueIsReportedAndNothingIsStored_data()
    {
        QTest::addColumn<QStringList>("values");
        QTest::addColumn<QString>("setting");
        const QString url = u"http://changed"_s;
        QTest::newRow("no address") << QStringList{{}, u"k"_s, u"m"_s} << texts::apiURL;
        QTest::newRow("no key") << QStringList{url, {}, u"m"_s} << texts::apiKey;
        QTest::newRow("no model") << QStringList{url, u"k"_s, {}} << texts::modelID;
        QTest::newRow("key of spaces") << QStringList{url, u"   "_s, u"m"_s} << texts::apiKey;
        QTest::newRow("address and key") << QStringList{{}, {}, u"m"_s} << texts::apiURL;
        QTest::newRow("key and model") << QStringList{url, {}, {}} << texts::apiKey;
        QTest::newRow("nothing") << QStringList{{}, {}, {}} << texts::apiURL;
        QTest::newRow("model of every white space")
            << QStringList{url, u"k"_s, u" \t\n\u3000\u00a0\u2028\u0085"_s} << texts::modelID;
    }

    void theFirstMissingValueIsReportedAndNothingIsStored()
    {
        QFETCH(const QStringList, values);
        QFETCH(const QString, setting);
        m_screen->fill(values);
        m_screen->save();
        for (const QString &name : texts::settings) {
            QCOMPARE(m_screen->shows(missing(name)), name == setting);
        }
        QVERIFY(openSheet() == nullptr);
        QCOMPARE(m_screen->stored(), m_defaults);
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
    }

    void aLineBreakInsideAKeyIsStoredAsItIs()
    {
        m_screen->fill({u"u"_s, u"a\nb\n"_s, u"m"_s});
        m_screen->save();
        QCOMPARE(m_screen->stored().at(1), u"a\nb"_s);
        QVERIFY(SettingsScreen::closeAlert());
    }

    void theRefusedFieldIsMarkedUntilItsTextChanges()
    {
        QLineEdit *key = m_screen->field(texts::apiKey);
        const QString hint = u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s;
        const auto redPixels = [key] {
            const QImage drawn = screenCapture::capture(key);
            int count = 0;
            for (int y = 0; y < drawn.height(); ++y) {
                for (int x = 0; x < drawn.width(); ++x) {
                    const QColor pixel = drawn.pixelColor(x, y);
                    count += pixel.red() > 200 && pixel.green() < 150 && pixel.blue() < 150 ? 1 : 0;
                }
            }
            return count;
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

private:
    const QStringList m_defaults{VolcengineConfig::defaultURL(), {}, VolcengineConfig::defaultModelID()};
    std::unique_ptr<SettingsScreen> m_screen;
};

QUILMORA_TEST(SettingsViewTest, runScreenTest)

#include "SettingsViewTest.moc"
