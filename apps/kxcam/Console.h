// What kxcam prints, kept apart from what the library prints.
//
// The library prints diagnostics on standard output. kxcam keeps a private copy of the original standard
// output for itself and hands descriptor 1 to standard error, so that `kxcam get ftp --json | jq` sees JSON
// and nothing else. As a person at a terminal is not helped by those lines either, nor by what the decoders write on
// standard error, all of it is dropped unless --verbose asks for it.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kxcam
{

/// Text that can not command a terminal: control characters become \xNN.
std::string printable(std::string_view text);

/// The parts, with the separator between them.
std::string joined(const std::vector<std::string>& parts, std::string_view separator);

/// A line of a table; without a description it has two columns.
struct TableLine
{
    std::string key;
    std::string value;
    std::string description;
};

class Console
{
public:
    /// Takes standard output for kxcam and hands descriptor 1 to standard error.
    Console();

    /// Whether a person watches.
    bool isTerminal() const { return terminal_; }

    /// Drops what the library prints. Remarks are printed all the same.
    void hideDiagnostics();

    void print(std::string_view text);

    /// Prints what is to be seen now, such as a progress bar.
    void printNow(std::string_view text);

    /// Prints aligned columns; descriptions are dim on a terminal.
    void table(const std::vector<TableLine>& lines);

    /// Shows what was printed so far.
    void flush();

    /// Whether what is printed gets nowhere: its reader has gone away, or the disk is full.
    bool isBroken() const { return error_ != 0; }

    /// Makes sure that everything has been written. A reader that has gone away is no failure.
    void finish();

private:
    struct CloseFile
    {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, CloseFile> out_;
    int error_ = 0; // of the first write that failed
    bool terminal_ = false;
    bool dims_ = false;
};

/// Prints a remark for the person on standard error: "kxcam: …".
void remark(std::string_view text);

} // namespace kxcam
