#include "app/NavigationTab.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

class NavigationTabTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allTabsComeInTheOrderOfTheirButtons();
    void everyTabHasItsTitleIdAndIcon_data();
    void everyTabHasItsTitleIdAndIcon();
    void aTitleGivesItsTab();
    void anyOtherTextGivesNoTab_data();
    void anyOtherTextGivesNoTab();
    void tabsAreEqualAndHashedByTheirTitle();
};

void NavigationTabTest::allTabsComeInTheOrderOfTheirButtons()
{
    QStringList titles;
    for (const NavigationTab tab : NavigationTab::allCases()) {
        titles.append(tab.rawValue());
    }
    QCOMPARE(titles, (QStringList{u"生成封面"_s, u"已生成列表"_s, u"功能设置"_s, u"帮助说明"_s}));
}

void NavigationTabTest::everyTabHasItsTitleIdAndIcon_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("icon");
    QTest::newRow("generate") << 0 << u"生成封面"_s << u"sparkles"_s;
    QTest::newRow("history") << 1 << u"已生成列表"_s << u"rectangle.grid.3x2"_s;
    QTest::newRow("settings") << 2 << u"功能设置"_s << u"gearshape"_s;
    QTest::newRow("help") << 3 << u"帮助说明"_s << u"questionmark.circle"_s;
}

void NavigationTabTest::everyTabHasItsTitleIdAndIcon()
{
    QFETCH(const int, index);
    const NavigationTab tab = NavigationTab::allCases().at(index);
    QTEST(tab.rawValue(), "title");
    QTEST(tab.id(), "title");
    QTEST(tab.iconName(), "icon");
    QVERIFY2(QFile::exists(u":/symbols/%1.svg"_s.arg(tab.iconName())), "the symbol is drawn");
}

void NavigationTabTest::aTitleGivesItsTab()
{
    for (const NavigationTab tab : NavigationTab::allCases()) {
        const auto found = NavigationTab::fromRawValue(tab.rawValue());
        QVERIFY(found.has_value());
        QVERIFY(*found == tab);
    }
}

void NavigationTabTest::anyOtherTextGivesNoTab_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString{};
    QTest::newRow("unknown") << u"历史"_s;
    QTest::newRow("blank after") << u"生成封面 "_s;
    QTest::newRow("part") << u"生成"_s;
    QTest::newRow("case name") << u"generate"_s;
}

void NavigationTabTest::anyOtherTextGivesNoTab()
{
    QFETCH(const QString, text);
    QVERIFY(!NavigationTab::fromRawValue(text).has_value());
}

void NavigationTabTest::tabsAreEqualAndHashedByTheirTitle()
{
    const NavigationTab first = NavigationTab::settings;
    const NavigationTab second = *NavigationTab::fromRawValue(u"功能设置"_s);
    QVERIFY(first == second);
    QVERIFY(first != NavigationTab::help);
    QCOMPARE(qHash(first), qHash(second));
    QCOMPARE(qHash(first), qHash(u"功能设置"_s));
    const QSet<NavigationTab> set{first, second, NavigationTab::help};
    QCOMPARE(set.size(), 2);
}

QTEST_GUILESS_MAIN(NavigationTabTest)
#include "NavigationTabTest.moc"
