#pragma once

#include <QHashFunctions>
#include <QList>
#include <QString>

#include <optional>

namespace quilmora {

/// One of the four screens, known by its title.
class NavigationTab final
{
public:
    enum Case { generate, history, settings, help };

    // Meant to convert: a tab is one of its cases.
    constexpr NavigationTab(Case tab) : m_tabCase{tab} {} // NOLINT(google-explicit-constructor)

    /// The tab with exactly that title, if there is one.
    static std::optional<NavigationTab> fromRawValue(const QString &title);

    /// All tabs in the order of their buttons.
    static const QList<NavigationTab> &allCases();

    constexpr operator Case() const { return m_tabCase; } // NOLINT(google-explicit-constructor)

    /// The title that the user sees.
    QString rawValue() const;
    QString id() const { return rawValue(); }

    /// Symbol beside the title.
    QString iconName() const;

private:
    Case m_tabCase;
};

inline size_t qHash(NavigationTab tab, size_t seed = 0) noexcept
{
    return qHash(tab.rawValue(), seed);
}

} // namespace quilmora
