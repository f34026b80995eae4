#include "atlas/OutputFile.h"

#include "atlas/Interrupt.h"
#include "atlas/System.h"

#include <cerrno>
#include <random>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr int kMostLinks = 40; // then links lead in a circle, and opening tells

bool IsStraight(const std::string& target) {
    std::error_code error;
    const fs::file_status status = fs::status(PathOf(target), error);
    return target == "-" || (fs::exists(status) && !fs::is_regular_file(status));
}

// Where links lead to, whether anything is there or not.
fs::path Followed(fs::path path) {
    std::error_code error;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i) {
        path = path.parent_path() / fs::read_symlink(path, error);
    }
    return path;
}

// Of its own length: a target's name may be as long as names can be.
fs::path DraftBeside(const fs::path& place) {
    return place.parent_path() / (".vesk_atlas-" + std::to_string(std::random_device()()));
}

} // namespace

OutputFile::OutputFile(std::string theTarget)
    : target(std::move(theTarget)), file(nullptr, nullptr) {
    if (target == "-") {
        file = {stdout, std::fflush};
    } else if (IsStraight(target)) {
        file = Open(PathOf(target));
    } else {
        place = Followed(PathOf(target));
        std::error_code error;
        const fs::file_status status = fs::status(place, error);
        if (status.type() != fs::file_type::not_found && !IsWritable(place)) {
            Fail(errno);
        }
        const fs::path name = DraftBeside(place);
        file = Open(name);
        draft = name; // ours from here on
        if (fs::exists(status)) {
            fs::permissions(draft, status.permissions(), error);
        }
    }
}

OutputFile::~OutputFile() {
    if (!draft.empty()) {
        file.reset(); // Windows removes no open file
        std::error_code error;
        fs::remove(draft, error);
    }
}

OutputFile::Handle OutputFile::Open(const fs::path& path) const {
    Handle opened(OpenToWrite(path, !place.empty()), std::fclose); // a draft is nobody else's
    if (opened == nullptr) {
        Fail(errno);
    }
    return opened;
}

void OutputFile::Write(const void* bytes, std::size_t count) {
    if (std::fwrite(bytes, 1, count, file.get()) != count) {
        Fail(errno);
    }
}

void OutputFile::Close() {
    if (file.get_deleter()(file.release()) != 0) {
        Fail(errno);
    }
    CheckInterrupted();
}

void OutputFile::PutInPlace() {
    if (!draft.empty()) {
        std::error_code error;
        fs::rename(draft, place, error);
        if (error) {
            Fail(error.default_error_condition().value());
        }
        draft.clear();
    }
}

void OutputFile::Fail(int error) const {
    CheckInterrupted();
    throw std::system_error(error, std::generic_category(), "cannot write " + target);
}

bool IsSameFile(const std::string& a, const std::string& b) {
    const auto place = [](const std::string& target) {
        std::error_code error;
        const fs::path path = Followed(PathOf(target == "-" ? "/dev/stdout" : target));
        const fs::path whole = fs::weakly_canonical(fs::absolute(path), error);
        return error ? path : whole;
    };
    std::error_code error;
    return place(a) == place(b) || fs::equivalent(place(a), place(b), error);
}
