// The e-mail that the camera sends.
#include <KxIpcSDK/KxNetwork.h>

#include "Area.h"

namespace kxcam
{
namespace
{

constexpr Field fields[] = {
    readOnly(field<&SmtpInfo::smtpenable>("smtpenable", "1: e-mail is on")),
    field<&SmtpInfo::smtpip>("smtpip", "mail server"),
    port(field<&SmtpInfo::smtpport>("smtpport", "the mail server's port")),
    zeroWhenUntold(field<&SmtpInfo::smtpauth>("smtpauth",
                                              "security: 0 none, 1 TLS, 2 SSL, 3 both (not on every model)")),
    field<&SmtpInfo::smtpuser>("smtpuser", "account name"),
    secret(field<&SmtpInfo::smtppwd>("smtppwd", "account password")),
    field<&SmtpInfo::smtpsender>("smtpsender", "sender address"),
    field<&SmtpInfo::emailuser>("emailuser", "recipients"),
};

} // namespace

extern constinit const Area smtpArea = makeArea<Kx_Ipc_GetSMTP, Kx_Ipc_SetSMTP>(
    "smtp", "e-mail that the camera sends (try it with `kxcam test-smtp`)", fields,
    {.whenNotKept = "Not every model has every value of smtpauth."});

} // namespace kxcam
