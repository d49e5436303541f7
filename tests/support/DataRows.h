#pragma once

#include <QTest>

namespace quilmora::test {

/// Adds the columns of a data function, and then its rows, each called with its name and its values.
template <typename... Columns>
class DataRows final
{
public:
    template <typename... Names>
    explicit DataRows(Names... names)
    {
        static_assert(sizeof...(Names) == sizeof...(Columns));
        (QTest::addColumn<Columns>(names), ...);
    }

    void operator()(const QByteArray &name, const Columns &...values) const
    {
        (QTest::newRow(name.constData()) << ... << values);
    }
};

} // namespace quilmora::test
