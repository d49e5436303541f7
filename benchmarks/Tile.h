#pragma once

#include <cstddef>
#include <vector>

namespace quilmora::bench {

/// Values of a square, row by row.
class Tile final
{
public:
    explicit Tile(int sideLength) : m_side{static_cast<std::size_t>(sideLength)}, m_values(m_side * m_side) {}

    /// Beyond an edge the tile begins anew.
    float &at(int x, int y) { return m_values[indexOf(x, y)]; }
    float at(int x, int y) const { return m_values[indexOf(x, y)]; }

    std::vector<float> &all() { return m_values; }

private:
    std::size_t indexOf(int x, int y) const
    {
        return static_cast<std::size_t>(y) % m_side * m_side + static_cast<std::size_t>(x) % m_side;
    }

    std::size_t m_side;
    std::vector<float> m_values;
};

} // namespace quilmora::bench
