#include "app/NavigationTab.h"

#include "support/TestProgram.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

class NavigationTabTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyTabHasItsTitleIdAndIcon()
    {
        // In the order of their buttons.
        const QList<std::pair<QString, QString>> expected{
            {u"生成封面"_s, u"sparkles"_s},
            {u"已生成列表"_s, u"rectangle.grid.3x2"_s},
            {u"功能设置"_s, u"gearshape"_s},
            {u"帮助说明"_s, u"questionmark.circle"_s},
        };
        QList<std::pair<QString, QString>> found;
        for (const NavigationTab tab : NavigationTab::allCases()) {
            found.append({tab.rawValue(), tab.iconName()});
            QCOMPARE(tab.id(), tab.rawValue());
            QVERIFY2(QFile::exists(u":/symbols/%1.svg"_s.arg(tab.iconName())), "the symbol is drawn");
            QVERIFY(NavigationTab::fromRawValue(tab.rawValue()) == std::optional{tab});
        }
        QCOMPARE(found, expected);
    }

    void anyOtherTextGivesNoTab()
    {
        const QString title = NavigationTab::allCases().constFirst().rawValue();
        const QStringList others{{}, u"历史"_s, title + u' ', title.left(2), u"generate"_s};
        for (const QString &text : others) {
            QVERIFY2(!NavigationTab::fromRawValue(text).has_value(), qPrintable(text));
        }
    }

    void tabsAreEqualAndHashedByTheirTitle()
    {
        const NavigationTab first = NavigationTab::settings;
        const NavigationTab second = *NavigationTab::fromRawValue(first.rawValue());
        QVERIFY(first == second);
        QVERIFY(first != NavigationTab::help);
        QCOMPARE(qHash(first), qHash(second));
        QCOMPARE(qHash(first), qHash(first.rawValue()));
        const QSet<NavigationTab> set{first, second, NavigationTab::help};
        QCOMPARE(set.size(), 2);
    }
};

QUILMORA_TEST(NavigationTabTest, quilmora::test::runCoreTest)
#include "NavigationTabTest.moc"
