#pragma once

#include <cstddef>
#include <vector>

namespace quilmora::bench
{

/// Values of a square, row by row.
class Tile final
{
public:
    explicit Tile(int sideLength) : side{static_cast<std::size_t>(sideLength)}, values(side * side) {}

    /// Beyond an edge the tile begins anew.
    float &at(int x, int y) { return values[indexOf(x, y)]; }
    float at(int x, int y) const { return values[indexOf(x, y)]; }

    std::vector<float> &all() { return values; }

private:
    std::size_t indexOf(int x, int y) const
    {
        return static_cast<std::size_t>(y) % side * side + static_cast<std::size_t>(x) % side;
    }

    std::size_t side;
    std::vector<float> values;
};

} // namespace quilmora::bench
