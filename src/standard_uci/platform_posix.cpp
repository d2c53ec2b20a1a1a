// The platform on Linux, macOS and their kin.
#ifndef _WIN32

#include "standard_uci/platform.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <cstdlib>
#include <memory>
#ifdef __linux__
#include <sys/prctl.h>
#include <csignal>
#endif

namespace ondrel::standard_uci {
namespace {

int nameless_file() {
#ifdef __linux__
    return memfd_create("ondrel-uci", MFD_CLOEXEC);
#else
    std::string path = "/tmp/ondrel-uci-XXXXXX";
    const int descriptor = mkstemp(path.data());
    if (descriptor >= 0) {
        unlink(path.c_str());
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
    return descriptor;
#endif
}

void* map_page(int descriptor) {
    void* const memory = mmap(nullptr, sizeof(SharedPage), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

class MappedFile : public PageForWorker {
public:
    MappedFile(int descriptor, SharedPage* page) : descriptor_(descriptor), page_(page) {}
    ~MappedFile() override {
        munmap(page_, sizeof(SharedPage));
        close(descriptor_);
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    [[nodiscard]] const SharedPage& page() const override { return *page_; }
    [[nodiscard]] int descriptor() const override { return descriptor_; }
    [[nodiscard]] std::string name() const override { return std::to_string(page_descriptor); }

private:
    int descriptor_;
    SharedPage* page_;
};

}  // namespace

std::unique_ptr<PageForWorker> make_page() {
    const int descriptor = nameless_file();
    if (descriptor < 0) {
        return nullptr;
    }
    void* const memory = ftruncate(descriptor, sizeof(SharedPage)) == 0 ? map_page(descriptor) : nullptr;
    if (memory == nullptr) {
        close(descriptor);
        return nullptr;
    }
    return std::make_unique<MappedFile>(descriptor, std::construct_at(static_cast<SharedPage*>(memory)));
}

SharedPage* open_page(const std::string& name) {
    const int descriptor = std::atoi(name.c_str());
    return descriptor == page_descriptor ? static_cast<SharedPage*>(map_page(descriptor)) : nullptr;
}

std::string process_number() { return std::to_string(getpid()); }

void end_with_parent(const std::string& number_of_parent) {
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    // It may have ended before the notice was asked for.
    if (std::to_string(getppid()) != number_of_parent) {
        std::_Exit(0);
    }
}

bool parent_has_ended([[maybe_unused]] const std::string& number_of_parent) {
#ifdef __linux__
    return false;
#else
    return std::to_string(getppid()) != number_of_parent;
#endif
}

}  // namespace ondrel::standard_uci

#endif
