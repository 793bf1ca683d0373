// FltReferenceChain: what one conversion knows of its external references across every
// nested conversion: the files being converted along the current chain (a file that
// references itself, directly or through others, is not converted again), and how many
// nested conversions the whole database has made, of how many files.
#pragma once

#include <cstddef>
#include <set>
#include <string>

class FltReferenceChain {
public:
    // Chains of external references deeper than this are not followed.
    static constexpr size_t kMaxDepth = 32;
    // Files that reference one file under several names, or several files that each
    // reference the same ones, would be converted again in every nested conversion, a number
    // that doubles with each level: the conversions of one database are bounded by its files.
    static constexpr size_t kConversionsPerFile = 64;
    static constexpr size_t kConversionsMargin = 1024;

    // The chain of the database at this path, which stands first in it.
    explicit FltReferenceChain(const char* databasePath) : database_(databasePath ? databasePath : "") {}
    FltReferenceChain(const FltReferenceChain&) = delete;
    FltReferenceChain& operator=(const FltReferenceChain&) = delete;

    // Whether the file a reference written as `name` opens may be converted: not when it is
    // being converted already, when the chain is too deep or the database has made too many
    // nested conversions (each reported). An admitted file counts as one more conversion.
    bool admit(const std::string& fileName, const std::string& name);

    // A file's place in the chain while its nested conversion runs, given up when it ends.
    class Link {
    public:
        Link(FltReferenceChain& chain, const std::string& fileName);
        ~Link();
        Link(const Link&) = delete;
        Link& operator=(const Link&) = delete;

    private:
        FltReferenceChain& chain_;
        std::string name_;
    };

private:
    void start();

    std::string database_;
    bool started_ = false;
    std::set<std::string> open_;
    std::set<std::string> files_;
    size_t conversions_ = 0;
    bool limitReported_ = false;
};
