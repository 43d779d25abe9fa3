// MBlobBuffer as a sequence of operations decoded from the input, against a plain model: the
// content the operation promises to keep, the capacity its sizing rule gives, and the shape
// every buffer has (capacity 0 or a multiple of 1024 and at least the size, data null exactly
// when the capacity is 0). The whole block is written after each step, so the sanitizers see
// any block smaller than it claims.
#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "FuzzSupport.h"
#include "MBlobBuffer.h"

namespace {

class Blob : public MBlobBuffer {
public:
    using MBlobBuffer::__Create_with_threshold;
    using MBlobImpl::_Detach;
    using MBlobImpl::_Free;
    using MBlobImpl::_Resize;
};

// The capacity after sizing a block of `capacity` bytes for `size` bytes.
unsigned long long CapacityFor(unsigned long long capacity, unsigned long long size) {
    if (size == 0)
        return 0;
    if (size <= capacity && capacity - size <= 1024)
        return capacity;
    return (size & ~1023ull) + 1024;
}

struct Model {
    std::vector<unsigned char> content; // what the buffer holds, byte for byte
    std::size_t kept = 0;               // how much of it the last operation promised to keep
    unsigned long long size = 0;
    unsigned long long capacity = 0;
};

void CheckShape(const Blob& blob, Model& model, unsigned char& fill) {
    FUZZ_CHECK(blob.GetSize() == model.size);
    FUZZ_CHECK(blob.GetCapacity() == model.capacity);
    FUZZ_CHECK(blob.GetCapacity() % 1024 == 0);
    FUZZ_CHECK((blob.GetData() == nullptr) == (blob.GetCapacity() == 0));
    if (blob.GetCapacity() == 0)
        return;
    FUZZ_CHECK(blob.GetCapacity() >= blob.GetSize());
    FUZZ_CHECK(
        std::equal(model.content.begin(), model.content.begin() + model.kept, blob.GetData()));
    // New content for the next step, up to the end of the block.
    std::fill(blob.GetData() + model.size, blob.GetData() + blob.GetCapacity(), ++fill);
    model.content.resize(model.size);
    for (unsigned char& byte : model.content)
        byte = ++fill;
    std::copy(model.content.begin(), model.content.end(), blob.GetData());
    model.kept = model.content.size();
}

// Sizing as _Resize does it, for the model.
void Resize(Model& model, unsigned long long size, bool keep) {
    const bool reused = size != 0 && size <= model.capacity && model.capacity - size <= 1024;
    const bool held = model.capacity != 0 && (keep || reused);
    model.kept = held ? std::min<std::size_t>(model.size, size) : 0;
    model.capacity = CapacityFor(model.capacity, size);
    model.size = size;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    Blob blob;
    Model model;
    unsigned char fill = 0;
    while (input.remaining_bytes() > 0) {
        switch (input.ConsumeIntegralInRange(0, 5)) {
        case 0: { // a copy of outside bytes
            const std::vector<unsigned char> bytes =
                input.ConsumeBytes<unsigned char>(input.ConsumeIntegralInRange(0, 5000));
            const unsigned char* result = blob.Create(bytes.data(), bytes.size());
            FUZZ_CHECK((result == nullptr) == bytes.empty());
            Resize(model, bytes.size(), false);
            model.content = bytes;
            model.kept = bytes.size();
            break;
        }
        case 1: { // a copy of part of its own content
            if (model.capacity == 0)
                break;
            const auto offset = input.ConsumeIntegralInRange<std::size_t>(0, model.size);
            const auto count = input.ConsumeIntegralInRange<std::size_t>(0, model.size - offset);
            blob.Create(blob.GetData() + offset, count);
            // Its own whole content changes nothing; any other part goes to a new block.
            if (count == 0 || offset != 0 || count != model.size) {
                model.capacity = 0;
                Resize(model, count, false);
            }
            model.content.assign(model.content.begin() + offset,
                                 model.content.begin() + offset + count);
            model.kept = count;
            break;
        }
        case 2: { // the threshold sizing of callers with signed 32-bit sizes
            const int count = input.ConsumeIntegralInRange(-2000, 5000);
            const bool keep = input.ConsumeBool();
            const bool append = input.ConsumeBool();
            const long long wanted = append ? static_cast<long long>(model.size) + count : count;
            try {
                blob.__Create_with_threshold(count, keep, append);
                FUZZ_CHECK(wanted >= 0);
                Resize(model, static_cast<unsigned long long>(wanted), keep);
            } catch (const std::bad_alloc&) {
                FUZZ_CHECK(wanted < 0); // and nothing changed
            }
            break;
        }
        case 3: { // plain sizing
            const auto wanted = input.ConsumeIntegralInRange<unsigned long long>(0, 5000);
            const bool keep = input.ConsumeBool();
            blob._Resize(wanted, keep);
            Resize(model, wanted, keep);
            break;
        }
        case 4:
            blob._Free();
            model.capacity = 0;
            model.kept = 0;
            break;
        default: {
            const std::unique_ptr<unsigned char[]> block = blob._Detach();
            FUZZ_CHECK((block != nullptr) == (model.capacity != 0));
            model.capacity = 0;
            model.kept = 0;
            break;
        }
        }
        CheckShape(blob, model, fill);
    }
    return 0;
}
