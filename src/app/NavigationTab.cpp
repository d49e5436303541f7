#include "app/NavigationTab.h"

using namespace Qt::StringLiterals;

namespace quilmora {

std::optional<NavigationTab> NavigationTab::fromRawValue(const QString &title)
{
    for (const NavigationTab tab : allCases()) {
        if (tab.rawValue() == title) {
            return tab;
        }
    }
    return std::nullopt;
}

const QList<NavigationTab> &NavigationTab::allCases()
{
    static const QList<NavigationTab> tabs{generate, history, settings, help};
    return tabs;
}

QString NavigationTab::rawValue() const
{
    switch (m_tabCase) {
    case generate:
        return u"生成封面"_s;
    case history:
        return u"已生成列表"_s;
    case settings:
        return u"功能设置"_s;
    case help:
        return u"帮助说明"_s;
    }
    Q_UNREACHABLE();
}

QString NavigationTab::iconName() const
{
    switch (m_tabCase) {
    case generate:
        return u"sparkles"_s;
    case history:
        return u"rectangle.grid.3x2"_s;
    case settings:
        return u"gearshape"_s;
    case help:
        return u"questionmark.circle"_s;
    }
    Q_UNREACHABLE();
}

} // namespace quilmora
