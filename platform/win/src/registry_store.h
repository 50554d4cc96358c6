// The file behind the registry: both trees as one map of key paths to values.
#pragma once

#include <win/types.h>

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace win::reg {

struct Value {
    std::wstring name; // as first written; lookups ignore case
    DWORD type = 0;
    std::vector<BYTE> data;
};

struct Key {
    std::wstring path;                    // full path from the root name, as first created
    std::map<std::wstring, Value> values; // by folded name
};

// Keys by folded full path ("hkey_current_user\software\..."). The roots always exist.
using Tree = std::map<std::wstring, Key>;

std::wstring fold(std::wstring_view text);

// Serialises the tree; parse fails with a message naming the key and value at fault.
std::string serialise(const Tree& tree);
bool parse(const std::string& text, Tree& tree, std::string& error);

class Store {
public:
    static Store& instance();

    // Runs look on the tree as the file holds it now (re-read when the file changed since the
    // last look), under the store's lock and without a copy: every setting read comes here.
    template <class Look>
    auto read(Look look) {
        std::lock_guard guard(mutex_);
        refresh();
        return look(static_cast<const Tree&>(tree_));
    }
    // Under the file lock: reads the file afresh, applies the change and writes the file back
    // atomically when the change returns true. The change's result code is returned, or
    // ERROR_CANTWRITE when the file can't be written.
    LONG update(const std::function<LONG(Tree&, bool& changed)>& change);

private:
    struct Seen {
        std::string file;
        long long mtimeNs = -1, size = -1, inode = -1;
    };
    void refresh(const std::string& file);
    void refresh(); // of the file the environment names
    Tree load(const std::string& file, bool underLock);
    // Moves a corrupt file to a backup beside it and says so; false if it couldn't be moved.
    bool setAside(const std::string& file, const std::string& reason);

    std::recursive_mutex mutex_;
    Tree tree_;
    Seen seen_;
    bool stillCorrupt_ = false; // a corrupt file that could not be moved aside
};

} // namespace win::reg
