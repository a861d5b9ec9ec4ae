// kxcam users list|add|delete|password|type: manages the camera's user accounts.
//
// What a camera says to a change is believed only when its list of users shows it.
#include <nlohmann/json.hpp>

#include <KxIpcSDK/KxUsers.h>

#include "Accounts.h"
#include "Json.h"
#include "SecretInput.h"
#include "Terminal.h"
#include "verbs/Verb.h"

namespace kxcam
{
namespace
{

struct Options
{
    std::string name;
    int authority = 2;
    bool yes = false;
};

constexpr char footer[] = R"(
Authorities and privileges are numbers of the camera's own; 'list' shows those in use.

A new password comes from the environment variable KXCAM_NEW_PASSWORD, else from a prompt,
or from a line of standard input when that is a file or a pipe. 'password' for the user
that kxcam logs in as changes the password of the next login.

Examples:
  kxcam --host 192.168.1.20 users list
  kxcam --host 192.168.1.20 users add guest --authority 1
  kxcam --host 192.168.1.20 users password guest
  kxcam --host 192.168.1.20 users delete guest --yes

Run 'kxcam --help' for --host, --port, --user, --json and the exit codes.)";

std::string quoted(const std::string& name)
{
    return "'" + printable(name) + "'";
}

/// What a failed change says; a camera that does not confirm it leaves no code.
void requireDone(int result, const std::string& what)
{
    if (result != 0)
        throw sdkFailure(what, "the camera did not confirm it. It may have rules for names, passwords and "
                               "authorities, or users that always stay.");
}

const User& requireUser(const std::vector<User>& users, const std::string& name, const Target& target)
{
    const User* user = findUser(users, name);
    if (user == nullptr)
        throw Failure(ExitCode::Refused, target.address() + " has no user " + quoted(name) +
                                             "; `kxcam users list` shows those it has");
    return *user;
}

/// The user's authority; a Failure when there is no such user or the camera does not tell.
int typeOf(const Options& options, const Session& session, const Target& target)
{
    const int type = Kx_Ipc_GetUserType(session.userId(), options.name.c_str());
    if (type >= 0)
        return type;
    requireUser(readUsers(session, target.address()), options.name, target);
    throw Failure(ExitCode::Refused,
                  target.address() + " does not tell the authority of " + quoted(options.name));
}

void printDone(const char* what, const Options& options, bool json, Console& console)
{
    if (json)
        printJson({{what, options.name}}, console);
    else
        console.print(std::string(what) + " " + options.name + "\n");
}

ExitCode notKept(const std::string& what)
{
    remark(what);
    return ExitCode::NotKept;
}

/// Whether the camera has the user with this authority.
ExitCode judge(const Options& options, int authority, const Session& session, const Target& target)
{
    const auto users = readUsers(session, target.address());
    const User* user = findUser(users, options.name);
    if (user == nullptr)
        return notKept("the camera confirmed it, but has no user " + quoted(options.name) + " now");
    const int kept = authority & 0xFF; // which is what the list tells
    if (user->authority.value_or(kept) != kept)
        return notKept("the camera confirmed it, but " + quoted(options.name) + " has the authority " +
                       std::to_string(*user->authority) + " instead of " + std::to_string(authority));
    return ExitCode::Ok;
}

std::string shown(const char* what, const std::optional<int>& number)
{
    return std::string(what) + " " + (number ? std::to_string(*number) : "(not told)");
}

nlohmann::ordered_json jsonOf(const std::optional<int>& number)
{
    return number ? nlohmann::ordered_json(*number) : nullptr;
}

ExitCode list(const CommandLine& line, Console& console)
{
    std::vector<TableLine> lines;
    auto array = nlohmann::ordered_json::array();
    for (const User& user : readUsers(Session(line.target), line.target.address())) {
        lines.push_back(
            {printable(user.name), shown("authority", user.authority), shown("privilege", user.privilege)});
        array.push_back({{"slot", user.slot},
                         {"name", user.name},
                         {"authority", jsonOf(user.authority)},
                         {"privilege", jsonOf(user.privilege)}});
    }
    if (line.json)
        printJson({{"users", array}}, console);
    else
        console.table(lines);
    return ExitCode::Ok;
}

ExitCode type(const Options& options, const CommandLine& line, Console& console)
{
    requireUserName(options.name);
    const int type = typeOf(options, Session(line.target), line.target);
    if (line.json)
        printJson({{"name", options.name}, {"authority", type}}, console);
    else
        console.print(std::to_string(type) + "\n");
    return ExitCode::Ok;
}

UserAccountInfo accountOf(const Options& options, const std::string& password)
{
    UserAccountInfo account{};
    options.name.copy(account.name, sizeof account.name - 1);
    password.copy(account.password, sizeof account.password - 1);
    account.authority = options.authority;
    return account;
}

void requireRoom(const std::vector<User>& users, const std::string& name, const Target& target)
{
    if (findUser(users, name) != nullptr)
        throw Failure(ExitCode::Refused, target.address() + " has a user " + quoted(name) +
                                             " already; `kxcam users password` gives it a new password");
    if (users.size() == userSlots)
        throw Failure(ExitCode::Refused, target.address() + " has as many users as it can keep");
}

ExitCode add(const Options& options, const CommandLine& line, Console& console)
{
    requireUserName(options.name);
    const std::string password = newPassword(options.name);
    requireNewPassword(password);

    const Session session(line.target);
    requireRoom(readUsers(session, line.target.address()), options.name, line.target);
    const UserAccountInfo account = accountOf(options, password);
    requireDone(Kx_Ipc_AddUser(session.userId(), &account), "adding the user " + quoted(options.name));
    const ExitCode code = judge(options, options.authority, session, line.target);
    if (code == ExitCode::Ok)
        printDone("added", options, line.json, console);
    return code;
}

ExitCode remove(const Options& options, const CommandLine& line, Console& console)
{
    requireUserName(options.name);
    if (options.name == line.target.user)
        throw Failure(ExitCode::Usage, quoted(options.name) + " is the user that kxcam logs in as; name "
                                                              "another one with --user to delete it");
    requireConsent(line.target.address() + " will lose its user " + quoted(options.name) + ".", options.yes);

    const Session session(line.target);
    requireUser(readUsers(session, line.target.address()), options.name, line.target);
    requireDone(Kx_Ipc_DeleteUser(session.userId(), options.name.c_str()),
                "deleting the user " + quoted(options.name));
    if (findUser(readUsers(session, line.target.address()), options.name) != nullptr)
        return notKept("the camera confirmed it, but still has the user " + quoted(options.name));
    printDone("deleted", options, line.json, console);
    return ExitCode::Ok;
}

// The camera deletes the user and adds it again with its authority. A user whose authority is not known would lose it,
// or be lost, so that is asked for first.
ExitCode changePassword(const Options& options, const CommandLine& line, Console& console)
{
    requireUserName(options.name);
    const std::string password = newPassword(options.name);
    requireNewPassword(password);

    Session session(line.target);
    const int authority = typeOf(options, session, line.target);
    requireDone(Kx_Ipc_ModifyPassword(session.userId(), options.name.c_str(), password.c_str()),
                "changing the password of " + quoted(options.name));
    if (options.name == line.target.user)
        session.logInWith(password);
    const ExitCode code = judge(options, authority, session, line.target);
    if (code == ExitCode::Ok)
        printDone("changed", options, line.json, console);
    return code;
}

} // namespace

void addUsers(const Verb& kxcam)
{
    const auto options = std::make_shared<Options>();
    const Verb users = kxcam.add("users", "List, add, delete and change user accounts", footer);
    const auto addNamed = [&](const char* name, const char* help, auto work) {
        const Verb verb = users.add(name, help).does(work, options);
        verb.argument("NAME", &options->name, "The user").required();
        return verb;
    };
    users.add("list", "Show the users, their authorities and privileges").does(list);
    addNamed("add", "Add a user", add)
        .option("--authority", "N", &options->authority, "The user's authority")
        .within(0, 255)
        .showDefault();
    addNamed("delete", "Delete a user", remove).flag("--yes", &options->yes, "Do not ask");
    addNamed("password", "Give a user a new password", changePassword);
    addNamed("type", "Show a user's authority", type);
}

} // namespace kxcam
