// From a device's answer to the record that an application gets.
#pragma once

#include <KxIpcSDK/KxSearch.h>

/// Reads the service addresses of one search. What an address leaves out keeps the value of the one before.
class AddressReader
{
public:
    /// Takes address and port from the first of the blank-separated addresses into `device`.
    void read(const char* addresses, SearchDeviceInfo& device);

private:
    int octets_[4] = {};
    int port_ = 0;
};

/// Takes name and model from a device's blank-separated scopes, cut to their fields; what is missing stays as it is.
void readScopes(const char* scopes, SearchDeviceInfo& device);

/// Whether an application hears of the device.
bool isOwnCamera(const SearchDeviceInfo& device);
