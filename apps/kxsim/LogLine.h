// What kxsim prints of a request.
#pragma once

#include <string>

/// A request line without the passwords, keys and proofs of passwords in its query.
std::string withoutSecrets(const std::string& line);
