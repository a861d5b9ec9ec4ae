// The users area: ten user slots, the password challenge, and the security questions.
//   adduser=NAME:PASSWORD:AUTHORITY:1            adds a user
//   adduser=NAME:PASSWORD:AUTHORITY:0            the same, or changes the user of this name
//   deluser=NAME                                 empties a user's slot
//   checkadminPwd=MD5                            proves the password of the camera's own user
//   newsetuser=NAME:PASSWORD:AUTHORITY:PRIVILEGE[:NUMBER]   adds or changes a user, after such a proof
#include "Users.h"

#include "../HttpText.h"
#include "Area.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <utility>

namespace kxsim
{
namespace
{

constexpr std::size_t slotCount = 10;
constexpr std::size_t ownSlot = 0;

// Every slot has one of each: "user.0", "password.0" and so on.
constexpr std::array slotRows{
    kept(Keep::Users, {"user", "", Access::ReadOnly}),
    kept(Keep::Users, {"password", "", Access::Hidden}),
    kept(Keep::Users, {"authority", "0", Access::ReadOnly}),
    kept(Keep::Users, {"privilege", "0", Access::ReadOnly}),
};

constexpr auto slotKeys = [] {
    std::array<std::array<char, 12>, slotRows.size() * slotCount> keys{};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const std::string_view name = slotRows[i / slotCount].key;
        std::copy(name.begin(), name.end(), keys[i].begin());
        keys[i][name.size()] = '.';
        keys[i][name.size() + 1] = static_cast<char>('0' + i % slotCount);
    }
    return keys;
}();

constexpr std::array otherRows{
    Setting{"adminproof", "", Access::Hidden},  // "1": the administrator's password was proven
    Setting{"challenges", "0", Access::Hidden}, // how many were given
    kept(Keep::Users, {"sqa_enable", "1", Access::Hidden}),
    kept(Keep::Users, {"sqa_type_0", "1", Access::Hidden}),
    kept(Keep::Users, {"sqa_question_0", "What was the name of your first school?", Access::Hidden}),
    kept(Keep::Users, {"sqa_type_1", "4", Access::Hidden}),
    kept(Keep::Users, {"sqa_question_1", "In which town did your parents meet?", Access::Hidden}),
    kept(Keep::Users, {"sqa_type_2", "0", Access::Hidden}),
    kept(Keep::Users, {"sqa_question_2", "", Access::Hidden}),
};

constexpr auto settings = [] {
    std::array<Setting, slotKeys.size() + otherRows.size()> rows{};
    for (std::size_t i = 0; i < slotKeys.size(); ++i) {
        rows[i] = slotRows[i / slotCount];
        rows[i].key = slotKeys[i].data();
    }
    std::copy(otherRows.begin(), otherRows.end(), rows.begin() + slotKeys.size());
    return rows;
}();

std::string keyOf(std::string_view name, std::size_t slot)
{
    return std::string(name) + "." + std::to_string(slot);
}

/// The first slot with this user; of an empty name, the first free one.
std::optional<std::size_t> slotOf(const Settings& camera, std::string_view name)
{
    for (std::size_t slot = 0; slot < slotCount; ++slot)
        if (camera.text(keyOf("user", slot)) == name)
            return slot;
    return std::nullopt;
}

struct User
{
    std::string name;
    std::string password;
    std::string authority;
    std::string privilege = "0";
};

void store(Settings& camera, std::size_t slot, const User& user)
{
    camera.keep(keyOf("user", slot), user.name);
    camera.keep(keyOf("password", slot), user.password);
    camera.keep(keyOf("authority", slot), user.authority);
    camera.keep(keyOf("privilege", slot), user.privilege);
}

std::vector<std::string> fieldsOf(std::string_view value)
{
    std::vector<std::string> fields{""};
    for (const char character : value) {
        if (character == ':')
            fields.emplace_back();
        else
            fields.back() += character;
    }
    return fields;
}

bool isNumber(const std::string& text)
{
    return !text.empty() && text.size() < 4 && text.find_first_not_of("0123456789") == std::string::npos;
}

/// Changes the user of this name, or adds it where there is room.
bool put(Settings& camera, const User& user)
{
    if (user.name.empty() || !isNumber(user.authority) || !isNumber(user.privilege))
        return false;
    auto slot = slotOf(camera, user.name);
    if (!slot)
        slot = slotOf(camera, "");
    if (slot)
        store(camera, *slot, user);
    return slot.has_value();
}

bool addUser(Settings& camera, const std::string& value)
{
    const auto fields = fieldsOf(value);
    if (fields.size() != 4)
        return false;
    const auto slot = slotOf(camera, fields[0]);
    if (slot && fields[3] != "0")
        return false;
    User user{fields[0], fields[1], fields[2]};
    if (slot)
        user.privilege = camera.text(keyOf("privilege", *slot));
    return put(camera, user);
}

bool deleteUser(Settings& camera, const std::string& name)
{
    const auto slot = slotOf(camera, name);
    if (name.empty() || !slot || *slot == ownSlot)
        return false;
    store(camera, *slot, {"", "", "0"});
    return true;
}

std::string md5(const std::string& text)
{
    constexpr char digits[] = "0123456789abcdef";
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned length = 0;
    EVP_Digest(text.data(), text.size(), digest.data(), &length, EVP_md5(), nullptr);
    std::string hex;
    for (unsigned i = 0; i < length; ++i) {
        hex += digits[digest[i] >> 4U];
        hex += digits[digest[i] & 15U];
    }
    return hex;
}

bool checkProof(Settings& camera, const std::string& value)
{
    const bool proven = value == md5(camera.text(keyOf("password", ownSlot)));
    camera.keep("adminproof", proven ? "1" : "");
    return proven;
}

bool setUser(Settings& camera, const std::string& value)
{
    const auto fields = fieldsOf(value);
    if (camera.text("adminproof").empty() || (fields.size() != 4 && fields.size() != 5))
        return false;
    return put(camera, {fields[0], fields[1], fields[2], fields[3]});
}

constexpr std::array setRules{
    SetRule{"adduser", addUser},
    SetRule{"deluser", deleteUser},
    SetRule{"checkadminPwd", checkProof},
    SetRule{"newsetuser", setUser},
};

std::vector<std::string> securityQuestions(Settings& camera, const Parameters&)
{
    constexpr std::string_view keys[] = {"sqa_enable",     "sqa_type_0", "sqa_question_0", "sqa_type_1",
                                         "sqa_question_1", "sqa_type_2", "sqa_question_2"};
    return camera.lines(keys);
}

// The key differs from challenge to challenge, as that of a camera does.
std::vector<std::string> challenge(Settings& camera, const Parameters& parameters)
{
    const auto publicKey = parameters.find("PublicKeytool");
    if (publicKey == parameters.end() || publicKey->second.empty())
        return {"NG challenge"};
    const std::string number = std::to_string(std::atoi(camera.text("challenges").c_str()) + 1);
    camera.keep("challenges", number);
    return {"OK challenge", "key=" + md5(number + publicKey->second), "keyid=" + number};
}

constexpr std::array actions{
    Action{adminPath, "get.sqa", securityQuestions},
    Action{"/challenge", "", challenge},
};

} // namespace

constinit const Area usersArea{.settings = settings, .setRules = setRules, .actions = actions};

void setOwnUser(Settings& camera, std::string_view name, std::string_view password)
{
    store(camera, ownSlot, {std::string(name), std::string(password), "10", "255"});
}

std::vector<Credentials> usersOf(const Settings& camera)
{
    std::vector<Credentials> users;
    for (std::size_t slot = 0; slot < slotCount; ++slot)
        if (std::string name = camera.text(keyOf("user", slot)); !name.empty())
            users.push_back({std::move(name), camera.text(keyOf("password", slot))});
    return users;
}

bool isUser(const Settings& camera, std::string_view authorization)
{
    const std::vector<Credentials> users = usersOf(camera);
    return std::any_of(users.begin(), users.end(), [&](const Credentials& user) {
        return authorization == "Basic " + base64(user.name + ":" + user.password);
    });
}

void forgetProof(Settings& camera)
{
    camera.keep("adminproof", "");
}

} // namespace kxsim
