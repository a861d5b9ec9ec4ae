#include "ipcctl/H264Headers.h"

namespace
{

/// Reads a unit bit by bit. A third zero byte is sent behind an inserted 3, so that it is no start code.
class BitReader
{
public:
    explicit BitReader(Bytes bytes) : bytes_(bytes) {}

    bool flag() { return bits(1) != 0; }
    unsigned bits(int count)
    {
        unsigned value = 0;
        for (; count > 0; --count)
            value = value << 1 | bit();
        return value;
    }
    /// A number with as many zeros before it as it has bits behind its first.
    unsigned number()
    {
        int zeros = 0;
        while (bit() == 0 && zeros < 32 && !failed_)
            ++zeros;
        failed_ |= zeros > 31;
        return failed_ ? 0 : (1u << zeros) - 1 + bits(zeros);
    }
    int signedNumber()
    {
        const auto code = static_cast<std::int64_t>(number());
        return static_cast<int>(code % 2 != 0 ? (code + 1) / 2 : -(code / 2));
    }
    /// Whether more was read than there is.
    bool failed() const { return failed_; }

private:
    unsigned bit()
    {
        if (left_ == 0)
            nextByte();
        --left_;
        return (byte_ >> left_) & 1u;
    }
    void nextByte()
    {
        left_ = 8;
        if (zeros_ >= 2 && !bytes_.empty() && bytes_[0] == 3) {
            bytes_ = bytes_.subspan(1);
            zeros_ = 0;
        }
        failed_ |= bytes_.empty();
        byte_ = failed_ ? 0 : bytes_[0];
        zeros_ = byte_ == 0 ? zeros_ + 1 : 0;
        if (!failed_)
            bytes_ = bytes_.subspan(1);
    }

    Bytes bytes_;
    unsigned byte_ = 0;
    int left_ = 0; // bits of it
    int zeros_ = 0;
    bool failed_ = false;
};

bool hasColourFormat(unsigned profile)
{
    static constexpr unsigned profiles[] = {44, 83, 86, 100, 110, 118, 122, 128, 134, 135, 138, 139, 244};
    return std::ranges::find(profiles, profile) != std::end(profiles);
}

void skipScalingList(BitReader& reader, int size)
{
    unsigned last = 8;
    for (int i = 0; i < size && last != 0 && !reader.failed(); ++i)
        last = (last + static_cast<unsigned>(reader.signedNumber())) % 256;
}

/// Whether the three colours are coded apart.
bool readColourFormat(BitReader& reader)
{
    constexpr unsigned fullColour = 3;
    const unsigned format = reader.number();
    const bool separate = format == fullColour && reader.flag();
    reader.number(); // bits of brightness and of colour
    reader.number();
    reader.flag();
    if (reader.flag())
        for (int list = 0; list < (format == fullColour ? 12 : 8); ++list)
            if (reader.flag())
                skipScalingList(reader, list < 6 ? 16 : 64);
    return separate;
}

void skipPictureOrder(BitReader& reader)
{
    const unsigned type = reader.number();
    if (type == 0)
        reader.number();
    if (type != 1)
        return;
    reader.flag();
    reader.signedNumber();
    reader.signedNumber();
    const unsigned count = reader.number();
    for (unsigned i = 0; i < count && !reader.failed(); ++i)
        reader.signedNumber();
}

} // namespace

std::optional<SequenceHeader> readSequenceHeader(Bytes unit)
{
    constexpr int fewestBits = 4;
    constexpr int mostBits = 16;
    BitReader reader(unit);
    SequenceHeader header;
    reader.bits(8);
    const unsigned profile = reader.bits(8);
    reader.bits(16); // constraints and level
    header.id = reader.number();
    header.separateColours = hasColourFormat(profile) && readColourFormat(reader);
    header.frameNumberBits = static_cast<int>(reader.number() % 256) + fewestBits;
    skipPictureOrder(reader);
    reader.number(); // of reference frames
    header.numbersMayBeLeftOut = reader.flag();
    reader.number(); // width and height
    reader.number();
    header.framesOnly = reader.flag();
    if (reader.failed() || header.frameNumberBits > mostBits)
        return std::nullopt;
    return header;
}

std::optional<SliceHeader> readSliceHeader(Bytes unit, const SequenceHeader& sequence)
{
    BitReader reader(unit);
    SliceHeader header;
    reader.bits(8);
    header.isFirst = reader.number() == 0;
    reader.number(); // its type
    reader.number(); // its picture parameter set
    if (sequence.separateColours)
        reader.bits(2);
    header.frameNumber = reader.bits(sequence.frameNumberBits);
    header.isField = !sequence.framesOnly && reader.flag();
    if (reader.failed())
        return std::nullopt;
    return header;
}
