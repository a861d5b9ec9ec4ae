// The simulated camera by itself: what tests, and people who try the SDK without hardware, rely on.
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <KxSim/SimCamera.h>

using kxsim::Fault;
using kxsim::SimCamera;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using Kind = kxsim::Fault::Kind;
using namespace std::chrono_literals;

namespace
{

enum class End
{
    Closed, // by the camera
    Open,   // and nothing more came in time
    Refused,
    Unreachable
};

/// A client that knows nothing of the SDK and waits for the camera no longer than `patience`.
class Client
{
public:
    explicit Client(const SimCamera& camera, std::chrono::microseconds patience = 5s)
    {
        const timeval limit{patience / 1s, (patience % 1s).count()};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit); // holds for connect, too
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(camera.port()));
        inet_pton(AF_INET, camera.host().c_str(), &address.sin_addr);
        if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            end_ = errno == ECONNREFUSED ? End::Refused : End::Unreachable;
    }
    ~Client() { close(socket_); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    void send(const std::string& bytes) { ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL); }

    /// What comes until the connection ends or falls silent, or until there is enough.
    std::string receive(std::size_t enough = 100'000)
    {
        std::string all;
        char chunk[4096];
        ssize_t count = 1;
        while (count > 0 && all.size() < enough) {
            count = recv(socket_, chunk, sizeof chunk, 0);
            all.append(chunk, count > 0 ? static_cast<std::size_t>(count) : 0);
        }
        if (count == 0)
            end_ = End::Closed;
        return all;
    }

    End end() const { return end_; }

private:
    int socket_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    End end_ = End::Open;
};

const std::string asAdmin = "Authorization: Basic YWRtaW46YWRtaW4=\r\n"; // admin:admin

std::string requestFor(const std::string& target, const std::string& headers = asAdmin)
{
    return "GET " + target + " HTTP/1.1\r\nHost: camera\r\n" + headers + "\r\n";
}

/// A request that sends a form whose parts are divided by "--x".
std::string uploadOf(const std::string& body, const std::string& target, const std::string& boundary = "x")
{
    return "POST " + target + " HTTP/1.1\r\n" + asAdmin +
           "Content-Type: multipart/form-data; boundary=" + boundary +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string ask(const SimCamera& camera, const std::string& request)
{
    Client client(camera);
    client.send(request);
    return client.receive();
}

std::string askSettings(const SimCamera& camera, const std::string& query)
{
    return ask(camera, requestFor("/vb.htm?" + query));
}

const std::string taken = kxsim::httpReply("OK ftpip\n");

} // namespace

TEST(SimCamera, SpeaksTheLanguageOfItsFamily)
{
    constexpr char ti[] = "KX-C200T";
    constexpr char hisi[] = "KX-C300B";
    constexpr char modelA[] = "KX-C400A";
    const struct
    {
        const char* model;
        const char* query;
        const char* body;
        const char* key;
        const char* kept;
    } rows[] = {
        {ti, "language=ie&paratest=ftpipport&paratest=bogus&paratest=ftppath",
         "OK ftpipport=21\nOK ftppath=/\n", "ftpip", ""},
        {ti, "\t\tparatest=\tftpipport\t", "OK ftpipport=21\n", "ftpip", ""},
        {ti, "ftpip=a%20b&ftppath=100%&bogus=1", "OK ftpip\nOK ftppath\n", "ftpip", "a b"},
        {ti, "ftpip=1&ftpip=2=3", "OK ftpip\nOK ftpip\n", "ftpip", "2=3"},
        {ti, "wifissid=home", "", "wifissid", ""},
        {ti, "newwifissid=home", "OK newwifissid\n", "wifissid", "home"},
        {ti, "planethost=cam&planetenable=1", "OK planethost\nOK planetenable\n", "ddnshost", "cam"},
        {ti, "planetenable=1", "OK planetenable\n", "ddnsenable", "1"},
        {ti, "upnpname=x", "", "upnpname", ""},
        {ti, "upnpinfo=1:2:81:556:my:cam", "OK upnpinfo\n", "upnpname", "my:cam"},
        {ti, "upnpinfo=1:2:81:my cam", "", "upnpenable", "0"},
        {ti, "macaddress=1&productmodel=2", "", "productmodel", ti},
        {ti, "testsmtp&smtpip=mail&testsmtp", "NG testsmtp\nOK smtpip\nOK testsmtp\n", "smtpip", "mail"},
        {ti, "smtpauth=3&smtpencryssl=1&paratest=smtpenable", "OK smtpauth\n", "smtpauth", "3"},
        {hisi, "smtpauth=3&smtpencryssl=1&paratest=smtpenable", "OK smtpencryssl\nOK smtpenable=1\n",
         "smtpencryssl", "1"},
        {modelA, "smtpauth=3&smtpencrytls=1", "OK smtpencrytls\n", "smtpencrytls", "1"},
        {ti, "ddnsdomain=www.no-ip.com", "OK ddnsdomain\n", "ddnsdomain", "www.no-ip.com"},
        {ti, "adduser=bob:pw:2:1&paratest=user.1&paratest=password.1", "OK adduser\nOK user.1=bob\n",
         "authority.1", "2"},
        {ti, "adduser=bob:pw:2:1&adduser=bob:pw:3:1&adduser=bob:pw:4:0", "OK adduser\nOK adduser\n",
         "authority.1", "4"},
        {ti, "adduser=a:b:c:2:1&adduser=:pw:2:1&adduser=bob:pw:-1:0&user.1=bob", "", "user.1", ""},
        {ti, "deluser=admin&deluser=&deluser=nobody", "", "user.0", "admin"},
        {ti, "adduser=bob:pw:2:1&deluser=bob&adduser=eve:pw:3:0", "OK adduser\nOK deluser\nOK adduser\n",
         "user.1", "eve"},
        {ti, "newsetuser=bob:pw:1:2&checkadminPwd=123&newsetuser=bob:pw:1:2", "", "user.1", ""},
        {ti, "checkadminPwd=21232f297a57a5a743894a0e4a801fc3&newsetuser=bob:pw:1:2:9",
         "OK checkadminPwd\nOK newsetuser\n", "privilege.1", "2"},
        {modelA, "ddnsdomain=www.no-ip.com&ddnshost=h", "OK ddnshost\n", "ddnsdomain", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.model) + " " + row.query);
        const SimCamera camera({.model = row.model});
        EXPECT_EQ(askSettings(camera, row.query), kxsim::httpReply(row.body));
        EXPECT_EQ(camera.value(row.key), row.kept);
    }
}

TEST(SimCamera, AnswersNobodyWithoutTheCredentials)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"/vb.htm?ftpip=new", "", "401 Unauthorized"},
        {"/vb.htm?ftpip=new", "Authorization: Basic YWRtaW46YWRtaW4=\r\n", "401 Unauthorized"},
        {"/vb.htm?action=get.network.general&user=me&pwd=mine", "", "401 Unauthorized"},
        {"/vb.htm?ftpip=new", "X-Authorization: Basic bWU6bWluZQ==\r\n", "401 Unauthorized"},
        {"/vb.htm", "authorization:Basic bWU6bWluZQ==\r\n", "200 OK"}, // me:mine
        {"/vb.htm?action=get.network.general", "Authorization: Basic bWU6bWluZQ==\r\n", "200 OK"},
        {"/other.htm?ftpip=new", "Authorization: Basic bWU6bWluZQ==\r\n", "404 Not Found"},
        {"/vb.htm?action=bogus", "Authorization: Basic bWU6bWluZQ==\r\n", "404 Not Found"},
    };
    const SimCamera camera({.user = "me", .password = "mine"});
    for (const auto& [target, headers, status] : rows)
        EXPECT_THAT(ask(camera, requestFor(target, headers)),
                    StartsWith(std::string("HTTP/1.1 ") + status + "\r\n"))
            << target << " " << headers;
    EXPECT_EQ(camera.value("ftpip"), "");
}

TEST(SimCamera, ForgetsAProofWithTheQuery)
{
    const SimCamera camera;
    askSettings(camera, "checkadminPwd=21232f297a57a5a743894a0e4a801fc3");
    EXPECT_EQ(askSettings(camera, "newsetuser=bob:pw:1:2"), kxsim::httpReply(""));
}

TEST(SimCamera, ChallengesWhoeverShowsAKey)
{
    const SimCamera camera;
    for (const char* target : {"/challenge", "/challenge?PublicKeytool=", "/challenge?key=k"})
        EXPECT_EQ(ask(camera, requestFor(target)), kxsim::httpReply("NG challenge\n"));
    EXPECT_THAT(ask(camera, requestFor("/challenge?PublicKeytool=k")),
                AllOf(HasSubstr("\nOK challenge\nkey="), HasSubstr("\nkeyid=1\n")));
}

TEST(SimCamera, KeepsWhatATestGivesItAndLacksWhatATestTakes)
{
    SimCamera camera({.lineEnd = "\r\n"});
    camera.setValue("macaddress", "mine");
    camera.setValue("brandnew", "1");
    camera.removeValue("ftpip");
    EXPECT_EQ(camera.value("ftpip"), std::nullopt);
    EXPECT_EQ(askSettings(camera, "paratest=macaddress&brandnew=2&paratest=brandnew&ftpip=3&paratest=ftpip"),
              kxsim::httpReply("OK macaddress=mine\r\nOK brandnew\r\nOK brandnew=2\r\n"));
}

TEST(SimCamera, LogsEachRequestBeforeItsReplyLeaves)
{
    SimCamera camera;
    camera.setValue("heard", "");
    camera.onRequest([&camera](const kxsim::Request& request) {
        camera.setValue("heard", *camera.value("heard") + request.target + ";");
    });
    const std::string request = requestFor("/vb.htm?paratest=ftpip");
    {
        const Client withoutRequest(camera);
    }
    Client client(camera);
    client.send(request.substr(0, 20)); // what comes in pieces, or with more behind it, is one request
    std::this_thread::sleep_for(1ms);
    client.send(request.substr(20) + "more");
    EXPECT_EQ(client.receive(), kxsim::httpReply("OK ftpip=\n"));
    ask(camera, "nonsense\r\n\r\n");

    const std::vector<kxsim::Request> log = camera.requests();
    ASSERT_EQ(log.size(), 2U);
    EXPECT_EQ(log[0].text, request);
    EXPECT_EQ(log[0].target, "/vb.htm?paratest=ftpip");
    EXPECT_EQ(log[0].status, 200);
    EXPECT_EQ(log[1].text, "nonsense\r\n\r\n");
    EXPECT_EQ(log[1].status, 401);
    EXPECT_EQ(camera.value("heard"), "/vb.htm?paratest=ftpip;;");
    EXPECT_EQ(camera.connections(), 3U);
    camera.forgetRequests();
    EXPECT_THAT(camera.requests(), testing::IsEmpty());
}

TEST(SimCamera, GivesReplacedRepliesInTheOrderOfTheOrders)
{
    SimCamera camera;
    camera.replaceReply("ftpip", "first", 2);
    camera.replaceReply("ftp", "second");
    camera.replaceReply("", "third");
    const std::pair<const char*, std::string> rows[] = {{"ftpip=new", "first"},
                                                        {"ftpuser=new", "second"},
                                                        {"ftpip=new", "first"},
                                                        {"ftpip=new", "third"},
                                                        {"ftpip=newest", taken}};
    for (const auto& [query, reply] : rows) {
        EXPECT_EQ(camera.value("ftpip"), ""); // a replaced reply is all that the camera does
        const bool anonymous = reply != taken;
        EXPECT_EQ(ask(camera, requestFor(std::string("/vb.htm?") + query, anonymous ? "" : asAdmin)), reply);
    }
    EXPECT_EQ(camera.value("ftpip"), "newest");
}

TEST(SimCamera, MisbehavesAsToldUntilTheFaultIsCleared)
{
    constexpr int unread = -1;
    const auto endless = AllOf(StartsWith("HTTP/1.1 200 OK\r\n"), Not(HasSubstr("Content-Length")),
                               HasSubstr("\nOK ftpip\nx"));
    const auto expectFault = [](const Fault& fault, End end, const testing::Matcher<std::string>& reply,
                                int status, const char* kept) {
        SCOPED_TRACE(testing::Message() << "fault " << static_cast<int>(fault.kind));
        SimCamera camera;
        camera.setFault(fault);
        Client client(camera, end == End::Closed ? 5s : 30ms);
        client.send(requestFor("/vb.htm?ftpip=new"));
        EXPECT_THAT(client.receive(), reply);
        EXPECT_EQ(client.end(), end);
        const std::vector<kxsim::Request> log = camera.requests();
        ASSERT_EQ(log.size(), status == unread ? 0U : 1U);
        EXPECT_TRUE(log.empty() || log[0].status == status) << log[0].status;
        EXPECT_EQ(camera.value("ftpip"), kept);
        camera.clearFault();
        EXPECT_EQ(askSettings(camera, "ftpip=newest"), taken);
    };
    expectFault({.kind = Kind::Refuse}, End::Refused, "", unread, "");
    expectFault({.kind = Kind::Unreachable}, End::Unreachable, "", unread, "");
    expectFault({.kind = Kind::SilentBefore}, End::Open, "", unread, "");
    expectFault({.kind = Kind::SilentAfter}, End::Open, "", 0, "");
    expectFault({.kind = Kind::EmptyReply}, End::Closed, "", 0, "");
    expectFault({.kind = Kind::Garbage}, End::Closed, AllOf(SizeIs(500), Not(HasSubstr("HTTP"))), 0, "");
    expectFault({.kind = Kind::Status, .status = 503}, End::Closed,
                StartsWith("HTTP/1.1 503 Service Unavailable\r\n"), 503, "");
    expectFault({.kind = Kind::CutShort, .bytes = 10}, End::Closed, taken.substr(0, 10), 0, "new");
    expectFault({.kind = Kind::CutShort, .bytes = 60}, End::Closed, taken.substr(0, 60), 200, "new");
    expectFault({.kind = Kind::Slow, .bytes = 20, .pause = 2ms}, End::Closed, taken, 200, "new");
    expectFault({.kind = Kind::Slow, .bytes = 20, .pause = 1h}, End::Open, taken.substr(0, 20), 200, "new");
    expectFault({.kind = Kind::Endless}, End::Open, endless, 200, "new");
}

TEST(SimCamera, KeepsAFileThatComesInAProperForm)
{
    const auto part = [](const std::string& name) {
        return "--x\r\nContent-Disposition: form-data; name=\"" + name + "\"; filename=\"f\"\r\n\r\n";
    };
    const std::string form = part("file") + "a\r\n\r\nb\r\n--x--\r\n";
    const struct
    {
        const char* target;
        std::string body;
        const char* status;
        const char* boundary = "x";
    } rows[] = {
        {"/dataloader.cgi?up=sd", form, "200 OK"},
        {"/dataloader.cgi?up=bogus", form, "404 Not Found"},
        {"/dataloader.cgi?up=cfg", form, "404 Not Found"}, // another family's
        {"/dataloader.cgi?up=sd", form, "400 Bad Request", "y"},
        {"/dataloader.cgi?up=sd", form + "more", "400 Bad Request"},
        {"/dataloader.cgi?up=sd", form.substr(0, form.size() - 4), "400 Bad Request"},
        {"/dataloader.cgi?up=sd", part("other") + "\r\n--x--\r\n", "400 Bad Request"},
        {"/dataloader.cgi?up=sd", "--x\r\n\r\n--x--\r\n", "400 Bad Request"},
        {"/dataloader.cgi?up=sd", "", "400 Bad Request"},
    };
    for (const auto& row : rows) {
        const SimCamera camera;
        const bool good = row.status == std::string("200 OK");
        EXPECT_THAT(ask(camera, uploadOf(row.body, row.target, row.boundary)),
                    StartsWith(std::string("HTTP/1.1 ") + row.status))
            << row.target << row.body;
        EXPECT_EQ(camera.file("/sd/f"), good ? std::optional<std::string>("a\r\n\r\nb") : std::nullopt);
        EXPECT_EQ(camera.requests().front().body, row.body);
    }
    const SimCamera camera;
    const std::string whole = uploadOf(form, "/dataloader.cgi?up=sd");
    Client(camera).send(whole.substr(0, whole.size() - 1)); // and leaves
    EXPECT_THAT(ask(camera, uploadOf(form, "/dataloader.cgi?up=sd")), HasSubstr("200 OK"));
    EXPECT_THAT(camera.requests(), SizeIs(1));
}

TEST(SimCamera, ActsOnTheFilesItIsSent)
{
    const SimCamera camera({.restartTime = 0ms});
    const auto send = [&](const std::string& target, const std::string& content) {
        ask(camera, uploadOf("--x\r\nContent-Disposition: form-data; name=\"file\"; filename=\"f\"\r\n\r\n" +
                                 content + "\r\n--x--\r\n",
                             target));
    };
    send("/update.cgi", "firmware 2.1.0\n...");
    EXPECT_EQ(camera.value("softversion"), "2.1.0");
    send("/uploadpara.cgi", "[param]\nftpip=10.0.0.9\nproductmodel=other\nbogus=1\npassword.0=stolen\n");
    EXPECT_EQ(camera.value("ftpip"), "10.0.0.9");
    EXPECT_EQ(camera.value("productmodel"), "KX-C200T");
    EXPECT_THAT(ask(camera, requestFor("/dataloader.cgi?dw=cfg")),
                AllOf(StartsWith("HTTP/1.1 200 OK\nContent-Type:"), HasSubstr("filename=\"config.ini\"\n"),
                      HasSubstr("\n\n[param]\n"), HasSubstr("\nftpip=10.0.0.9\n"),
                      Not(HasSubstr("password.0"))));
}

TEST(SimCamera, FaultsHitOnlyTheRequestsTheyAreFor)
{
    SimCamera camera;
    camera.setFault({.kind = Kind::SilentAfter, .onlyFor = "ftpip", .count = 2});
    const bool hit[] = {true, false, true, false, false};
    const char* const queries[] = {"ftpip=new", "ftppath=new", "ftpip=new", "ftppath=new", "ftpip=new"};
    std::vector<std::unique_ptr<Client>> waiting; // one client's silence is no other's
    for (std::size_t i = 0; i < std::size(queries); ++i) {
        waiting.push_back(std::make_unique<Client>(camera, hit[i] ? 30ms : 5s));
        waiting.back()->send(requestFor(std::string("/vb.htm?") + queries[i]));
        EXPECT_EQ(waiting.back()->receive().empty(), hit[i]) << i;
    }
}

TEST(SimCamera, ARestartDropsConnectionsAndRefusesThemForItsTime)
{
    for (const auto time : {0ms, 50ms, std::chrono::milliseconds(1h)}) {
        SCOPED_TRACE(time.count());
        SimCamera camera({.restartTime = time});
        Client idle(camera);
        idle.send("GET /"); // never ends its request
        askSettings(camera, "ftpip=kept");
        EXPECT_EQ(askSettings(camera, "ipcamrestartcmd"), kxsim::httpReply("OK ipcamrestartcmd\n"));
        EXPECT_EQ(idle.receive(), "");
        EXPECT_EQ(idle.end(), End::Closed);
        EXPECT_EQ(camera.value("ftpip"), "kept");
        camera.clearFault(); // opens no door that a restart holds shut
        if (time != 50ms) {
            EXPECT_EQ(Client(camera).end(), time == 0ms ? End::Open : End::Refused);
        }
        for (int tries = 0; tries < 500 && time == 50ms && Client(camera).end() == End::Refused; ++tries)
            std::this_thread::sleep_for(2ms);
        EXPECT_EQ(Client(camera).end(), time == 1h ? End::Refused : End::Open);
    }
}

TEST(SimCamera, EndsAtOnceAndLeavesItsPortWhateverItDoes)
{
    for (int kind = static_cast<int>(Kind::None); kind <= static_cast<int>(Kind::Status); ++kind) {
        SCOPED_TRACE(testing::Message() << "fault " << kind);
        auto camera = std::make_unique<SimCamera>();
        const auto port = static_cast<unsigned short>(camera->port());
        EXPECT_THROW(SimCamera({.port = port}), std::system_error);
        camera->setFault({.kind = static_cast<Kind>(kind), .pause = 1h});
        Client idle(*camera, 20ms);
        Client busy(*camera, 20ms);
        busy.send(requestFor("/vb.htm?ftpip=new"));
        busy.receive(1);
        const auto start = std::chrono::steady_clock::now();
        camera.reset();
        EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
        const SimCamera next({.port = port});
        EXPECT_EQ(askSettings(next, "ftpip=new"), taken);
    }
}
