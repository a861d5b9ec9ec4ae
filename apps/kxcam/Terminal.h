// The terminal that kxcam runs on, wherever its input and output are led.
#pragma once

#include <string>

namespace kxcam
{

class Descriptor
{
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

private:
    int descriptor_;
};

/// False when there is none.
Descriptor openTerminal();

/// The same where a person types the input; false when it comes from a file or a pipe.
Descriptor terminalOfInput();

/// Has the person agree to what can not be taken back, by typing "yes". Throws a Failure of usage when there is nobody
/// to ask, or the answer is another.
///
/// @param what   what will happen, as a sentence
/// @param given  the person has agreed on the command line
void requireConsent(const std::string& what, bool given);

} // namespace kxcam
