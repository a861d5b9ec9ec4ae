/**
 * @file
 * Network settings of a camera: wired network, Wi-Fi, dynamic DNS, e-mail, FTP, UPnP and service ports.
 *
 * What all calls of this header have in common, unless a function says otherwise:
 * - They send one request to the camera and block until it has answered or a time limit has passed, see
 *   KxIpcSDK.h.
 * - A get fills the caller's record. A field whose key the camera's answer lacks keeps the caller's value, so
 *   zero the record first. A text longer than its field is cut; the field is always terminated. Of the answer the
 *   first 1023 bytes are read, headers included; a key behind them counts as missing.
 * - A set sends the caller's record. Ranges are not checked. Texts go into the request as they stand, but for
 *   blanks, which are encoded: an ampersand would begin another key, and a line break another header line, so
 *   check texts that come from users. The settings of one call may take 1022 characters; what goes beyond is cut
 *   without an error.
 * - To change a setting, read the record with the get, change it, and pass it to the set. Fields that the get never
 *   fills need a value of your own first; they are marked.
 * - They return 0, or -1 with the record unchanged. For a set, 0 means that the camera answered, not that it took
 *   the settings; read them back to be sure. "403 Forbidden" counts as an answer.
 * - Errors: #KX_ERROR_NOT_INITIALISED; #KX_ERROR_UNKNOWN_USER; #KX_ERROR_UNAUTHORISED, #KX_ERROR_NOT_FOUND,
 *   #KX_ERROR_BAD_GATEWAY as the camera answers; #KX_ERROR_NETWORK, also when the process has no descriptor left.
 *   None is set, and -1 returned, for a null record and, by gets, for an answer that begins with a zero byte.
 * - Cameras end the lines of an answer with a line feed. Where one ends them with carriage return and line feed, the
 *   carriage return stays in a text, dotted addresses excepted.
 * - Numeric codes without a stated meaning are the camera's own and pass unchanged.
 *
 * A field is named after the camera's key for it. Text fields are terminated text in the size given.
 */
#ifndef KXIPCSDK_KXNETWORK_H
#define KXIPCSDK_KXNETWORK_H

#include <stdint.h>

#include <KxIpcSDK/KxExport.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Wired network. */
typedef struct NetworkInfo
{
    uint8_t dhcpenable;  /**< 1: address by DHCP, 0: static */
    char netip[32];      /**< IPv4 address, dotted */
    char netmask[32];    /**< subnet mask, dotted */
    char gateway[32];    /**< default gateway, dotted */
    char dnsip[32];      /**< DNS server, dotted */
    int httpport;        /**< the camera's HTTP port; read only */
    char macaddress[24]; /**< MAC address; read only */
} NetworkInfo;

/** Wi-Fi client. */
typedef struct WifiInfo
{
    char wifissid[64];     /**< network name; sent as `newwifissid` */
    uint8_t wifimode;      /**< wireless mode code */
    uint8_t wifiencrypt;   /**< 0: none, 1: WEP, 2 to 4: the WPA variants */
    uint8_t wepauthtype;   /**< WEP authentication type code */
    uint8_t wepkeylength;  /**< WEP key length code */
    uint8_t wepkeyformat;  /**< WEP key format code */
    uint8_t wepkeyindex;   /**< active WEP key, 0 to 3 */
    char wepkey1[32];      /**< WEP key 1 */
    char wepkey2[32];      /**< WEP key 2 */
    char wepkey3[32];      /**< WEP key 3 */
    char wepkey4[32];      /**< WEP key 4 */
    uint8_t wpapairwise;   /**< WPA pairwise cipher code */
    char wpakey[64];       /**< WPA pass phrase */
    uint8_t wpsenable;     /**< 1: WPS on */
    char wpspincode[32];   /**< the camera's own WPS PIN; read only */
    int wpsconntype;       /**< WPS connection type; 2: by the router's name and PIN */
    char wpsroutessid[64]; /**< router name for connection type 2 */
    char wpsroutepin[32];  /**< router PIN for connection type 2 */
    uint8_t wifidhcp;      /**< 1: wireless address by DHCP, 0: static */
    char wifinip[32];      /**< static wireless IPv4 address */
    char wifinmask[32];    /**< static wireless subnet mask */
    char wifigway[32];     /**< static wireless gateway */
    char wifidns[32];      /**< static wireless DNS server */
} WifiInfo;

/** Dynamic DNS. Two services share the record: the general one and the "planet" one. */
typedef struct DdnsInfo
{
    uint8_t ddnsenable;     /**< 1: dynamic DNS on */
    char ddnsdomain[64];    /**< provider, e.g. "www.no-ip.com", "www.zoneedit.com"; see the functions */
    char ddnsusername[32];  /**< account name; the planet service's `planetusername` */
    char ddnspassword[512]; /**< account password; the planet service's `planetpassword` */
    char ddnshash[128];     /**< provider's hash or token */
    char ddnshost[128];     /**< host name registered; the planet service's `planethost` */
    char ddnsurl[128];      /**< update address of a custom provider */
    int ddnshttpport;       /**< published HTTP port */
    int ddnsrtspport;       /**< published RTSP port */
    int ddnsplaybackport;   /**< published playback port */
    uint8_t planetenable;   /**< not 0: the set writes the planet service; **never filled by the get** */
    uint8_t planeteasymode; /**< 1: easy mode of the planet service */
    char macaddress[32];    /**< MAC address; read only */
} DdnsInfo;

/** E-mail. */
typedef struct SmtpInfo
{
    char smtpuser[32];    /**< account name */
    char smtpsender[256]; /**< sender address */
    char smtppwd[512];    /**< account password */
    char smtpip[32];      /**< mail server */
    int smtpport;         /**< mail server's port */
    char emailuser[256];  /**< recipients as the camera holds them */
    int smtpauth; /**< transport security: 0 none, 1 TLS, 2 SSL; 3 both, on models that keep two flags; such a
                               model's 3 is read as 2 */
    int smtpenable; /**< 1: e-mail on; read only */
} SmtpInfo;

/** FTP target. */
typedef struct FtpInfo
{
    char ftpip[64];       /**< FTP server */
    int ftpipport;        /**< FTP server's port */
    char ftpuser[192];    /**< user name */
    char ftppassword[32]; /**< password */
    char ftppath[192];    /**< remote directory */
} FtpInfo;

/** UPnP port mapping. */
typedef struct UpnpInfo
{
    uint8_t upnpenable;     /**< 1: mapping on */
    char upnpname[64];      /**< friendly name */
    uint8_t upnptype;       /**< mapping type code (automatic, manual) */
    int upnphttpport;       /**< external port mapped to HTTP */
    int httpport;           /**< the camera's HTTP port; read only */
    uint8_t upnpstatushttp; /**< state of the HTTP mapping; read only */
    int upnprtspport;       /**< external port mapped to RTSP */
    int mainrtspport;       /**< the camera's RTSP port; read only */
    uint8_t upnpstatusrtsp; /**< state of the RTSP mapping; read only */
} UpnpInfo;

/** Service ports. */
typedef struct PortInfo
{
    int httpport;     /**< HTTP */
    int onvifport;    /**< ONVIF */
    int mainrtspport; /**< RTSP of the main stream */
    int subrtspport;  /**< RTSP of the sub stream; sent by the set, **never filled by the get** */
} PortInfo;

/**
 * Reads the wired network settings. Addresses come without leading zeros ("192.168.001.010" is given as
 * "192.168.1.10"); what is not a dotted address stays as the camera wrote it.
 *
 * @param      userId  the session
 * @param[out] info    filled from `dhcpenable`, `netip`, `netmask`, `gateway`, `dnsip`, `macaddress`, `httpport`
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetNetwork(long userId, NetworkInfo* info);

/**
 * Writes the wired network settings; `httpport` and `macaddress` are not sent.
 *
 * **May end the session**, as Kx_Ipc_Logout() does and with what that asks of other calls: whenever `dhcpenable` is
 * not 0, and whenever `netip` is not, to the letter, the host that the session was logged in with (so always after
 * a login by name). The camera may have left its address; the user id becomes unknown, and the application logs
 * in again. With `dhcpenable` not 0 a failed request counts as success, because the camera may have dropped its
 * old address before it answered; the last error is then whatever that request set.
 *
 * @param     userId  the session
 * @param[in] info    `dhcpenable` and the four addresses are sent
 * @return 0, or -1 (only with `dhcpenable` 0 or before a request; the session is kept)
 */
KX_API int Kx_Ipc_SetNetwork(long userId, const NetworkInfo* info);

/**
 * Reserved for a list of the wireless networks in reach. Does nothing and checks nothing.
 *
 * @param userId  not used
 * @param list    not used
 * @return 0
 */
KX_API int Kx_Ipc_SearchWifiList(long userId, void* list);

/**
 * Reads the Wi-Fi settings.
 *
 * @param      userId  the session
 * @param[out] info    every field, from the key of its name
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetWifiInfo(long userId, WifiInfo* info);

/**
 * Writes the Wi-Fi settings, as far as they matter for the chosen modes: the WEP fields with `wifiencrypt` 1 (of
 * the keys only the one that `wepkeyindex` selects), the WPA fields with `wifiencrypt` 2 to 4, the WPS fields with
 * `wpsenable`, the addresses with `wifidhcp` 0. `wpspincode` is never sent.
 *
 * @param     userId  the session
 * @param[in] info    the settings
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetWifiInfo(long userId, const WifiInfo* info);

/**
 * Reads the dynamic DNS settings. For cameras that keep a provider's bare domain, `ddnsdomain` is given as the
 * provider's web host ("no-ip.com" as "www.no-ip.com", "zoneedit.com" as "www.zoneedit.com").
 *
 * @param      userId  the session
 * @param[out] info    every field but `planetenable`, from the key of its name
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetDDNS(long userId, DdnsInfo* info);

/**
 * Writes the dynamic DNS settings. With `ddnsenable` 0 only that switch is sent, whatever `planetenable` says.
 * Otherwise the planet service's settings with `planetenable` not 0 (`ddnsenable`, `ddnshash` and `ddnsurl` are not
 * sent then), else the general ones (without the two planet switches). Two or three requests: the camera's model
 * is asked first.
 *
 * @param         userId  the session
 * @param[in,out] info    the settings. For cameras that keep a provider's bare domain, `ddnsdomain` is replaced in
 *                        the record by what was sent: "no-ip.com", "zoneedit.com", "planet" (for a text that
 *                        contains "PlanetDDNS") or "custom_server"; also when the last request then fails
 * @return 0, or -1 (also when the camera answers nothing to the question for its model)
 */
KX_API int Kx_Ipc_SetDDNS(long userId, DdnsInfo* info);

/**
 * Reads the e-mail settings.
 *
 * @param      userId  the session
 * @param[out] info    filled from the keys of the fields' names; `smtpenable` becomes 1 when the answer has no such
 *                     key; `smtpauth` comes from `smtpauth` or, where that is missing, from `smtpencryssl` and
 *                     `smtpencrytls` (SSL wins) and stays untouched when neither is on
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetSMTP(long userId, SmtpInfo* info);

/**
 * Writes the e-mail settings; `smtpenable` is not sent. Two requests: the camera's model is asked first, because
 * `smtpauth` goes out as one number or as two flags.
 *
 * @param     userId  the session
 * @param[in] info    the settings
 * @return 0, or -1 (also when the camera answers nothing to the question for its model)
 */
KX_API int Kx_Ipc_SetSMTP(long userId, const SmtpInfo* info);

/**
 * Asks the camera to send a test mail with the settings it has.
 *
 * @param userId  the session
 * @return 0: sent; 1: the camera could not send it; -1: the request failed
 */
KX_API int Kx_Ipc_TestSMTP(long userId);

/**
 * Reads the FTP target.
 *
 * @param      userId  the session
 * @param[out] info    every field, from the key of its name
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetFTP(long userId, FtpInfo* info);

/**
 * Writes the FTP target.
 *
 * @param     userId  the session
 * @param[in] info    every field is sent
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetFTP(long userId, const FtpInfo* info);

/**
 * Tells whether the camera announces itself by UPnP (`scanupnp`).
 *
 * @param userId  the session
 * @return the switch as a signed 8-bit value, 1 for on; 0 for off and for every failure
 */
KX_API int Kx_Ipc_IsUpnpEnable(long userId);

/**
 * Switches the camera's UPnP announcement (`scanupnp`).
 *
 * @param userId  the session
 * @param enable  on when its low byte is not 0
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetUpnpEnable(long userId, int enable);

/**
 * Reads the UPnP port mapping.
 *
 * @param      userId  the session
 * @param[out] info    every field, from the key of its name
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetUpnpPortMapping(long userId, UpnpInfo* info);

/**
 * Writes the UPnP port mapping, as one value `upnpinfo`; states and local ports are not sent.
 *
 * @param     userId  the session
 * @param[in] info    `upnpenable`, `upnptype`, `upnphttpport`, `upnprtspport` and `upnpname` are sent
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetUpnpPortMapping(long userId, const UpnpInfo* info);

/**
 * Reads the service ports.
 *
 * Of the answer the first 511 bytes are read.
 *
 * @param      userId  the session
 * @param[out] info    `httpport`, `onvifport` and `mainrtspport`; `subrtspport` stays untouched
 * @return 0, or -1
 */
KX_API int Kx_Ipc_GetPortInfo(long userId, PortInfo* info);

/**
 * Writes the service ports. The session keeps the port it was logged in with: when `httpport` has changed, log in
 * again at the new one.
 *
 * @param     userId  the session
 * @param[in] info    all four fields are sent, `subrtspport` too
 * @return 0, or -1
 */
KX_API int Kx_Ipc_SetPortInfo(long userId, const PortInfo* info);

#ifdef __cplusplus
}
#endif

#endif
