// What kxcam knows of a settings area: a table of fields. Getting, setting, JSON and the help of keys walk
// that table, so a new area is a file with a table in areas/ and its name in areas/Areas.cpp. An area that a
// camera has once a video stream is made of an area a stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace kxcam
{

struct Target;

/// What a field holds; neither number nor text when the camera does not tell it.
using Value = std::variant<std::monostate, int, std::string>;

inline bool isTold(const Value& value)
{
    return !std::holds_alternative<std::monostate>(value);
}

enum class Kind
{
    Text,   // at most size - 1 bytes
    Number, // an int
    Byte    // 0 to 255
};

enum class Access
{
    ReadWrite,
    ReadOnly,
    WriteOnly, // the camera never tells it; a set that does not name it sends 0
    MustGive   // the camera never tells it, and a 0 sent unasked does harm: every set names it
};

/// One field of a record. Its key is the name of the field, which is the camera's name for it.
struct Field
{
    std::string_view key;
    std::string_view help;
    Kind kind;
    std::size_t size; // bytes in the record
    Value (*read)(const void* record);
    void (*write)(void* record, const Value& value); // a text is shorter than the field
    Access access = Access::ReadWrite;
    bool secret = false;
    bool zeroWhenUntold = false; // a camera that does not tell it means 0
    bool running = false;        // goes on by itself, as a clock does
    bool someModels = false;     // a camera that does not tell it does not have it, nor mind what a set sends
    bool encoded = false;        // the SDK sends it so that any text arrives
    int lowest = std::numeric_limits<int>::min();
    int highest = std::numeric_limits<int>::max();

    bool isRead() const { return access == Access::ReadWrite || access == Access::ReadOnly; }
    bool isWritten() const { return access != Access::ReadOnly; }
};

/// Where an area does not behave as people expect.
struct Quirks
{
    /// Why the camera may not keep what a set was given.
    std::string_view whenNotKept = {};
    /// Where to log in after a set that makes the camera leave its address or port; empty: it stays.
    std::string (*moved)(const void* before, const void* wanted, const Target& target) = nullptr;
    /// Whether the running fields of a record are those that were written, gone on since.
    bool (*wentOn)(const void* written, const void* after) = nullptr;
    /// Why a set takes long, and how long.
    std::string_view whySlow = {};
};

struct Area;

struct Stream
{
    std::string_view name;
    const Area* area;
};

struct Area
{
    std::string_view name;
    std::string_view help;
    std::span<const Field> fields;
    std::size_t recordSize;
    int (*get)(long userId, void* record);
    int (*set)(long userId, void* record);
    Quirks quirks = {};
    std::span<const Stream> streams = {}; // whose areas hold the settings; empty: this one does
};

/// A record of an area, as the SDK takes it. All is 0 and untold at first.
class Record
{
public:
    explicit Record(const Area& area) : area_(&area), bytes_(area.recordSize), told_(area.fields.size()) {}

    void* data() { return bytes_.data(); }
    const void* data() const { return bytes_.data(); }

    Value value(const Field& field) const { return told_[indexOf(field)] ? field.read(data()) : Value(); }

    /// A value that is not told leaves 0 behind.
    void setValue(const Field& field, const Value& value);

private:
    std::size_t indexOf(const Field& field) const
    {
        return static_cast<std::size_t>(&field - area_->fields.data());
    }

    const Area* area_;
    std::vector<std::byte> bytes_;
    std::vector<bool> told_;
};

/// What a camera tells of a stream; nothing when it does not have it.
struct StreamRecord
{
    const Stream* stream;
    std::optional<Record> record;
};

/// What stands for a secret that is not to be shown; an empty one is no secret.
std::string masked(const std::string& secret);

/// A value as people read it, also one that is not told: secrets masked, empty texts named, control
/// characters made visible.
std::string displayed(const Field& field, const Value& value, bool showSecrets);

/// What a field takes: "text, at most 63 bytes".
std::string accepted(const Field& field);

/// "ftpip, ftpipport, ftpuser"
std::string joinedKeys(const Area& area);

// How the tables in areas/ are written.

template <typename Class, typename Member>
Class classOf(Member Class::*);

/// A field, its kind and size taken from the member. A record that inherits the member names itself.
template <auto Member, typename RecordType = decltype(classOf(Member))>
constexpr Field field(std::string_view key, std::string_view help)
{
    using Type = std::remove_reference_t<decltype(std::declval<RecordType&>().*Member)>;
    constexpr Kind kind = std::is_array_v<Type>                ? Kind::Text
                          : std::is_same_v<Type, std::uint8_t> ? Kind::Byte
                                                               : Kind::Number;
    const auto read = [](const void* record) -> Value {
        const auto& member = static_cast<const RecordType*>(record)->*Member;
        if constexpr (kind == Kind::Text)
            return std::string(member, strnlen(member, sizeof member));
        else
            return static_cast<int>(member);
    };
    const auto write = [](void* record, const Value& value) {
        auto& member = static_cast<RecordType*>(record)->*Member;
        if constexpr (kind == Kind::Text)
            std::memcpy(member, std::get<std::string>(value).c_str(),
                        std::get<std::string>(value).size() + 1);
        else
            member = static_cast<Type>(std::get<int>(value));
    };
    Field made{key, help, kind, sizeof(Type), read, write};
    if (kind == Kind::Byte) {
        made.lowest = 0;
        made.highest = 255;
    }
    return made;
}

constexpr Field ranged(Field field, int lowest, int highest = std::numeric_limits<int>::max())
{
    field.lowest = lowest;
    field.highest = highest;
    return field;
}

constexpr Field port(Field field)
{
    return ranged(field, 0, 65535);
}

constexpr Field with(Field field, Access access)
{
    field.access = access;
    return field;
}

constexpr Field with(Field field, bool Field::*trait)
{
    field.*trait = true;
    return field;
}

constexpr Field readOnly(Field field)
{
    return with(field, Access::ReadOnly);
}

constexpr Field writeOnly(Field field)
{
    return with(field, Access::WriteOnly);
}

constexpr Field mustGive(Field field)
{
    return with(field, Access::MustGive);
}

constexpr Field secret(Field field)
{
    return with(field, &Field::secret);
}

constexpr Field running(Field field)
{
    return with(field, &Field::running);
}

constexpr Field zeroWhenUntold(Field field)
{
    return with(field, &Field::zeroWhenUntold);
}

constexpr Field onSomeModels(Field field)
{
    return with(field, &Field::someModels);
}

constexpr Field encoded(Field field)
{
    return with(field, &Field::encoded);
}

template <typename RecordType>
RecordType recordOf(int (*)(long, RecordType*));

/// An area from its get and set calls.
template <auto Get, auto Set>
constexpr Area makeArea(std::string_view name, std::string_view help, std::span<const Field> fields,
                        Quirks quirks = {})
{
    using RecordType = decltype(recordOf(Get));
    const auto get = [](long userId, void* record) { return Get(userId, static_cast<RecordType*>(record)); };
    const auto set = [](long userId, void* record) { return Set(userId, static_cast<RecordType*>(record)); };
    return {name, help, fields, sizeof(RecordType), get, set, quirks};
}

/// An area made of an area a stream.
constexpr Area makeArea(std::string_view name, std::string_view help, std::span<const Stream> streams)
{
    return {name, help, {}, 0, nullptr, nullptr, {}, streams};
}

} // namespace kxcam
