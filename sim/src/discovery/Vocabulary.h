// The fixed words of WS-Discovery as network cameras speak it (its edition of April 2005).
#pragma once

#include <string_view>

namespace kxsim
{

constexpr std::string_view soap11Space = "http://schemas.xmlsoap.org/soap/envelope/";
constexpr std::string_view soap12Space = "http://www.w3.org/2003/05/soap-envelope";
constexpr std::string_view addressingSpace = "http://schemas.xmlsoap.org/ws/2004/08/addressing";
constexpr std::string_view discoverySpace = "http://schemas.xmlsoap.org/ws/2005/04/discovery";
constexpr std::string_view networkSpace = "http://www.onvif.org/ver10/network/wsdl";

constexpr std::string_view cameraType = "NetworkVideoTransmitter"; // in networkSpace

constexpr std::string_view toEverybody = "urn:schemas-xmlsoap-org:ws:2005:04:discovery";
constexpr std::string_view toSender = "http://schemas.xmlsoap.org/ws/2004/08/addressing/role/anonymous";

} // namespace kxsim
