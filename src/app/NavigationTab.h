#pragma once

#include <QHashFunctions>
#include <QList>
#include <QString>

#include <optional>

namespace quilmora {

/// One of the screens, known by its title.
class NavigationTab final
{
public:
    enum Case { generate, history, settings, help };

    // Meant to convert: a tab is one of its cases.
    constexpr NavigationTab(Case tab) : m_tabCase{tab} {} // NOLINT(google-explicit-constructor)

    /// The tab with exactly that title, if there is one.
    static std::optional<NavigationTab> fromRawValue(const QString &title)
    {
        for (const NavigationTab tab : allCases()) {
            if (tab.rawValue() == title) {
                return tab;
            }
        }
        return std::nullopt;
    }

    /// All tabs in the order of their buttons.
    static const QList<NavigationTab> &allCases()
    {
        static const QList<NavigationTab> tabs = [] {
            QList<NavigationTab> all;
            for (int tab = 0; tab < entries().size(); ++tab) {
                all.append(static_cast<Case>(tab));
            }
            return all;
        }();
        return tabs;
    }

    constexpr operator Case() const { return m_tabCase; } // NOLINT(google-explicit-constructor)

    /// The title that the user sees.
    QString rawValue() const { return entries().at(m_tabCase).title; }
    QString id() const { return rawValue(); }

    /// Symbol beside the title.
    QString iconName() const { return entries().at(m_tabCase).iconName; }

private:
    struct Entry {
        QString title;
        QString iconName;
    };

    /// In the order of the cases.
    static const QList<Entry> &entries()
    {
        static const QList<Entry> all{
            {QStringLiteral("生成封面"), QStringLiteral("sparkles")},
            {QStringLiteral("已生成列表"), QStringLiteral("rectangle.grid.3x2")},
            {QStringLiteral("功能设置"), QStringLiteral("gearshape")},
            {QStringLiteral("帮助说明"), QStringLiteral("questionmark.circle")},
        };
        return all;
    }

    Case m_tabCase;
};

inline size_t qHash(NavigationTab tab, size_t seed = 0) noexcept { return qHash(tab.rawValue(), seed); }

} // namespace quilmora
