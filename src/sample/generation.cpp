#include "sample/generation.h"

#include "base/error.h"

#include <algorithm>
#include <iterator>

namespace sample {

namespace {

constexpr Generation generations[] = {
    {5, "5.1.1", "9B206", "iPhone2,1", "iPhone 3GS", 21, 34, 96, 1340032130},
    {6, "6.1.6", "10B500", "iPhone2,1", "iPhone 3GS", 36, 50, 108, 1398932130},
    {7, "7.1.2", "11D257", "iPhone3,1", "iPhone 4", 7006, 52, 122, 1409300130},
    {9, "9.3.6", "13G37", "iPhone4,1", "iPhone 4S", 9006, 62, 131, 1566300530},
    {10, "10.2.1", "14D27", "iPhone5,2", "iPhone 5", 10012, 66, 136, 1488300530},
    {11, "11.4.1", "15G77", "iPhone8,4", "iPhone SE", 11018, 70, 140, 1531500530},
    {12, "12.4", "16G77", "iPhone10,6", "iPhone X", 12005, 72, 144, 1563900530},
    {14, "14.3", "18C66", "iPhone12,8", "iPhone SE", 14006, 80, 150, 1609300530},
    {15, "15.7.1", "19H117", "iPhone13,2", "iPhone 12", 15005, 83, 155, 1666900530},
    {16, "16.1", "20B82", "iPhone14,5", "iPhone 13", 16005, 84, 158, 1667900530},
    {17, "17.4", "21E219", "iPhone15,2", "iPhone 14 Pro", 17005, 84, 160, 1710062130},
};

} // namespace

const Generation &generationFor(int ios)
{
    const auto found = std::find_if(std::begin(generations), std::end(generations),
                                    [ios](const Generation &generation) { return generation.ios == ios; });
    if (found == std::end(generations))
        throw Error(QStringLiteral("Samples of iOS %1 can not be made.").arg(ios));
    return *found;
}

} // namespace sample
