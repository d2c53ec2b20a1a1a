// What the operating systems do each in their own way: memory shared with a child process, and the end of a child with
// its parent. Nothing else of the front or the worker knows on which system it runs.
#pragma once

#include "standard_uci/shared_page.h"

#include <memory>
#include <string>

namespace ondrel::standard_uci {

// A page of the front's that one worker can open. It lives as long as this object and the worker's view of it.
class PageForWorker {
public:
    virtual ~PageForWorker() = default;
    [[nodiscard]] virtual const SharedPage& page() const = 0;
    // The file descriptor that the worker must find at page_descriptor; -1 where it opens the page by name alone.
    [[nodiscard]] virtual int descriptor() const = 0;
    // What the worker is to be told.
    [[nodiscard]] virtual std::string name() const = 0;
};

// The place behind standard input, output and error.
constexpr int page_descriptor = 3;

// Null where the system gives none: the worker's lines tell nearly as much.
std::unique_ptr<PageForWorker> make_page();

// The worker's view of the page; null if there is none of this name.
SharedPage* open_page(const std::string& name);

// The number of this process, as a child is to be told it.
std::string process_number();

// Ends this process as soon as its parent ends, where the system can do that; at once if that parent has ended already.
void end_with_parent(const std::string& number_of_parent);

// Whether the parent has ended. For systems where end_with_parent can do nothing; elsewhere always false.
bool parent_has_ended(const std::string& number_of_parent);

}  // namespace ondrel::standard_uci
