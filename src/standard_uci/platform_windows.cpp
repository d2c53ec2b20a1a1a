// The platform on Windows. Children of the event loop stand in a job that ends with the process that made it.
#ifdef _WIN32

#include "standard_uci/platform.h"

#include <windows.h>
#include <memory>

namespace ondrel::standard_uci {
namespace {

class NamedMapping : public PageForWorker {
public:
    NamedMapping(HANDLE mapping, SharedPage* page, std::string name)
        : mapping_(mapping), page_(page), name_(std::move(name)) {}
    ~NamedMapping() override {
        UnmapViewOfFile(page_);
        CloseHandle(mapping_);
    }
    NamedMapping(const NamedMapping&) = delete;
    NamedMapping& operator=(const NamedMapping&) = delete;

    [[nodiscard]] const SharedPage& page() const override { return *page_; }
    [[nodiscard]] int descriptor() const override { return -1; }
    [[nodiscard]] std::string name() const override { return name_; }

private:
    HANDLE mapping_;
    SharedPage* page_;
    std::string name_;
};

}  // namespace

std::unique_ptr<PageForWorker> make_page() {
    static int made = 0;
    std::string name = "Local\\ondrel-uci-" + process_number() + "-" + std::to_string(++made);
    const HANDLE mapping =
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(SharedPage), name.c_str());
    if (mapping == nullptr) {
        return nullptr;
    }
    void* const memory = MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(SharedPage));
    if (memory == nullptr) {
        CloseHandle(mapping);
        return nullptr;
    }
    return std::make_unique<NamedMapping>(mapping, std::construct_at(static_cast<SharedPage*>(memory)),
                                          std::move(name));
}

SharedPage* open_page(const std::string& name) {
    const HANDLE mapping = OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, name.c_str());
    return mapping == nullptr
               ? nullptr
               : static_cast<SharedPage*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(SharedPage)));
}

std::string process_number() { return std::to_string(GetCurrentProcessId()); }
void end_with_parent(const std::string&) {}
bool parent_has_ended(const std::string&) { return false; }

}  // namespace ondrel::standard_uci

#endif
