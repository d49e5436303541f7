#include "screens/settings/SettingsView.h"

#include "model/VolcengineConfig.h"
#include "screens/common/Sheet.h"
#include "screens/common/Theme.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class SettingsViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyPieceHasItsNameAndNothingElseIsThere();
    void theTabKeyFollowsTheForm();
    void aFreshUserSeesTheDefaultsAndAnEmptyKey();
    void theKeyIsMasked();
    void addressAndModelAreNotComposed();
    void theFirstMissingValueIsReportedAndNothingIsStored_data();
    void theFirstMissingValueIsReportedAndNothingIsStored();
    void valuesAreStoredTrimmedWhileTheFieldsKeepThem();
    void aLineBreakInsideAKeyIsStoredAsItIs();
    void theErrorStaysUntilTheNextSave();
    void theRefusedFieldIsMarkedUntilItsTextChanges();
    void theStoredValuesAreReadAtEveryAppearance();
    void theDefaultAddressComesBackAfterItWasClearedElsewhere();

private:
    QLineEdit *field(const QString &name) { return accessible::find<QLineEdit>(window.get(), name); }
    void fill(const QString &url, const QString &key, const QString &model);
    void save() { click(accessible::find<QAbstractButton>(window.get(), u"保存设置"_s)); }
    bool shows(const QString &text) { return accessible::find(window.get(), text) != nullptr; }
    static Sheet *alert() { return openSheet(); }
    static void closeAlert();

    std::unique_ptr<TemporaryHome> home;
    std::unique_ptr<DatabaseManager> database;
    std::unique_ptr<QWidget> window;
    SettingsView *view = nullptr;
};

void SettingsViewTest::init()
{
    home = std::make_unique<TemporaryHome>();
    database = std::make_unique<DatabaseManager>(home->path(u"data"_s), home->path(u"covers"_s));
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    view = new SettingsView{*database, window.get()};
    column->addWidget(view);
    showWindow(*window, {1000, 640});
}

void SettingsViewTest::cleanup()
{
    window.reset();
    database.reset();
}

void SettingsViewTest::fill(const QString &url, const QString &key, const QString &model)
{
    typeInto(field(u"API URL"_s), url);
    typeInto(field(u"API Key"_s), key);
    typeInto(field(u"Model ID"_s), model);
}

void SettingsViewTest::closeAlert()
{
    click(accessible::find<QAbstractButton>(alert(), u"好的"_s));
    QTRY_VERIFY(alert() == nullptr);
}

void SettingsViewTest::everyPieceHasItsNameAndNothingElseIsThere()
{
    const QString url = VolcengineConfig::defaultURL();
    const QStringList expected{
        u"火山引擎图片生成"_s,
        u"调用接口：POST /api/v3/images/generations"_s,
        u"API URL"_s,
        u"默认："_s + url,
        u"API URL"_s,
        u"API Key"_s,
        u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s,
        u"API Key"_s,
        u"Model ID"_s,
        u"如：doubao-seedream-4-0-250828、doubao-seedream-3-0-t2i-250415 等"_s,
        u"Model ID"_s,
        u"保存设置"_s,
        u"功能设置"_s,
    };
    QStringList names = accessible::names(window.get());
    QStringList sorted = expected;
    std::sort(names.begin(), names.end());
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(names, sorted);
    QCOMPARE(field(u"API URL"_s)->placeholderText(), url);
    QCOMPARE(field(u"API Key"_s)->placeholderText(), u"Bearer 长效 API Key"_s);
    QCOMPARE(field(u"Model ID"_s)->placeholderText(), u"doubao-seedream-4-0-250828"_s);
}

void SettingsViewTest::theTabKeyFollowsTheForm()
{
    QCOMPARE(accessible::focusOrder(window.get()),
             (QStringList{u"API URL"_s, u"API Key"_s, u"Model ID"_s, u"保存设置"_s}));
}

void SettingsViewTest::aFreshUserSeesTheDefaultsAndAnEmptyKey()
{
    QCOMPARE(field(u"API URL"_s)->text(), VolcengineConfig::defaultURL());
    QCOMPARE(field(u"API Key"_s)->text(), QString{});
    QCOMPARE(field(u"Model ID"_s)->text(), VolcengineConfig::defaultModelID());
}

void SettingsViewTest::theKeyIsMasked()
{
    typeInto(field(u"API Key"_s), u"secret"_s);
    QCOMPARE(field(u"API Key"_s)->echoMode(), QLineEdit::Password);
    QVERIFY(!field(u"API Key"_s)->displayText().contains(u"secret"_s));
    const QAccessibleInterface *interface = accessible::interfaceOf(field(u"API Key"_s));
    QVERIFY(interface->state().passwordEdit);
    QVERIFY(!interface->text(QAccessible::Value).contains(u"secret"_s));
}

void SettingsViewTest::addressAndModelAreNotComposed()
{
    for (const QString &name : {u"API URL"_s, u"Model ID"_s}) {
        QLineEdit *latin = field(name);
        QVERIFY(latin->inputMethodHints().testFlags(Qt::ImhHiddenText | Qt::ImhPreferLatin));
        QCOMPARE(latin->echoMode(), QLineEdit::Normal);
    }
    QVERIFY(field(u"API URL"_s)->inputMethodHints().testFlag(Qt::ImhUrlCharactersOnly));
}

void SettingsViewTest::theFirstMissingValueIsReportedAndNothingIsStored_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("message");
    const QString url = u"http://changed"_s;
    QTest::newRow("no address") << QString{} << u"k"_s << u"m"_s << u"请填写 API URL"_s;
    QTest::newRow("no key") << url << QString{} << u"m"_s << u"请填写 API Key"_s;
    QTest::newRow("no model") << url << u"k"_s << QString{} << u"请填写 Model ID"_s;
    QTest::newRow("key of spaces") << url << u"   "_s << u"m"_s << u"请填写 API Key"_s;
    QTest::newRow("address and key") << QString{} << QString{} << u"m"_s << u"请填写 API URL"_s;
    QTest::newRow("key and model") << url << QString{} << QString{} << u"请填写 API Key"_s;
    QTest::newRow("nothing") << QString{} << QString{} << QString{} << u"请填写 API URL"_s;
    QTest::newRow("model of every white space")
        << url << u"k"_s << u" \t\n\u3000\u00a0\u2028\u0085"_s << u"请填写 Model ID"_s;
}

void SettingsViewTest::theFirstMissingValueIsReportedAndNothingIsStored()
{
    QFETCH(const QString, url);
    QFETCH(const QString, key);
    QFETCH(const QString, model);
    QFETCH(const QString, message);
    fill(url, key, model);
    save();
    QStringList shown;
    for (const QString &text : {u"请填写 API URL"_s, u"请填写 API Key"_s, u"请填写 Model ID"_s}) {
        if (shows(text)) {
            shown.append(text);
        }
    }
    QCOMPARE(shown, QStringList{message});
    QVERIFY(alert() == nullptr);
    const VolcengineConfig stored = database->getConfig();
    QCOMPARE(stored.apiURL, VolcengineConfig::defaultURL());
    QCOMPARE(stored.apiKey, QString{});
    QCOMPARE(stored.modelID, VolcengineConfig::defaultModelID());
}

void SettingsViewTest::valuesAreStoredTrimmedWhileTheFieldsKeepThem()
{
    fill(u"http://host/path "_s, u"\u3000\tke y\u00a0"_s, u" model\u2003"_s);
    save();
    const VolcengineConfig stored = database->getConfig();
    QCOMPARE(stored.apiURL, u"http://host/path"_s);
    QCOMPARE(stored.apiKey, u"ke y"_s);
    QCOMPARE(stored.modelID, u"model"_s);
    closeAlert();
    QCOMPARE(field(u"API URL"_s)->text(), u"http://host/path "_s);
    QCOMPARE(field(u"API Key"_s)->text(), u"\u3000\tke y\u00a0"_s);
    QCOMPARE(field(u"Model ID"_s)->text(), u" model\u2003"_s);
    view->hide();
    view->show();
    QCOMPARE(field(u"API URL"_s)->text(), u"http://host/path"_s);
}

void SettingsViewTest::aLineBreakInsideAKeyIsStoredAsItIs()
{
    fill(u"u"_s, u"a\nb\n"_s, u"it's \"m\" & <b>"_s);
    save();
    QCOMPARE(database->getConfig().apiKey, u"a\nb"_s);
    QCOMPARE(database->getConfig().modelID, u"it's \"m\" & <b>"_s);
    closeAlert();
}

void SettingsViewTest::theRefusedFieldIsMarkedUntilItsTextChanges()
{
    QLineEdit *key = field(u"API Key"_s);
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
    save();
    QVERIFY(shows(u"请填写 API Key"_s));
    QVERIFY2(redPixels() > 2 * key->width(), qPrintable(QString::number(redPixels())));
    QCOMPARE(spoken(), u"无效。"_s + hint);
    // Also without the focus, and while the user looks at other fields.
    field(u"API URL"_s)->setFocus();
    QVERIFY(redPixels() > 2 * key->width());

    typeInto(key, u"k"_s);
    QCOMPARE(redPixels(), 0);
    QCOMPARE(spoken(), hint);
    // The message stays until the next save.
    QVERIFY(shows(u"请填写 API Key"_s));
}

void SettingsViewTest::theErrorStaysUntilTheNextSave()
{
    fill(u"u"_s, {}, u"m"_s);
    save();
    QVERIFY(shows(u"请填写 API Key"_s));
    const QImage line = screenCapture::capture(accessible::find(window.get(), u"请填写 API Key"_s));
    QVERIFY(screenCapture::countOf(line, themeColor(ColorRole::redText), {}, 8) > 5);
    typeInto(field(u"API Key"_s), u"k"_s);
    QVERIFY2(shows(u"请填写 API Key"_s), "typing does not clear it");
    save();
    QVERIFY(!shows(u"请填写 API Key"_s));
    closeAlert();
}

void SettingsViewTest::theStoredValuesAreReadAtEveryAppearance()
{
    typeInto(field(u"API Key"_s), u"not saved"_s);
    view->hide();
    database->saveConfig(u"http://elsewhere"_s, u"other"_s, u"model-2"_s);
    view->show();
    QCOMPARE(field(u"API URL"_s)->text(), u"http://elsewhere"_s);
    QCOMPARE(field(u"API Key"_s)->text(), u"other"_s);
    QCOMPARE(field(u"Model ID"_s)->text(), u"model-2"_s);
}

void SettingsViewTest::theDefaultAddressComesBackAfterItWasClearedElsewhere()
{
    database->saveConfig({}, u"k"_s, {});
    view->hide();
    view->show();
    QCOMPARE(field(u"API URL"_s)->text(), VolcengineConfig::defaultURL());
    QCOMPARE(field(u"Model ID"_s)->text(), VolcengineConfig::defaultModelID());
}

int main(int argc, char *argv[])
{
    return runScreenTest<SettingsViewTest>(argc, argv);
}

#include "SettingsViewTest.moc"
