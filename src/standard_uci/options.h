// The options that the client sees: what they are, what they may be, what they are now. The session owns them.
#pragma once

#include "standard_uci/commands.h"

#include <string>
#include <vector>

namespace ondrel::standard_uci {

enum class OptionKind : unsigned char { check, spin, combo, button };

struct Option {
    std::string name;
    std::string announcement;  // behind "option name "
    OptionKind kind = OptionKind::check;
    std::int64_t least = 0;
    std::int64_t most = 0;
    Words choices;
    std::string value;
    bool of_engine = false;  // the worker must be told
    bool was_set = false;
};

class Options {
public:
    Options();

    [[nodiscard]] const std::vector<Option>& all() const { return options_; }

    // Sets one. Gives the option, or null with the reason why nothing was set.
    const Option* set(const SetOption& wanted, std::string& fault);

    [[nodiscard]] bool is_on(std::string_view name) const;
    [[nodiscard]] std::int64_t number(std::string_view name) const;
    [[nodiscard]] const std::string& value(std::string_view name) const;

private:
    void add(std::string announcement, bool of_engine);

    std::vector<Option> options_;
};

}  // namespace ondrel::standard_uci
