#include "CrcArithmetic.h"

namespace KelBase {
namespace Crc {

const Crc32Loop Crc32Slice8 = SliceLoop<Reflected32>;
const Crc16Loop Crc16Slice8 = SliceLoop<Msb16>;

} // namespace Crc
} // namespace KelBase
