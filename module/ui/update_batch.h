// update_batch.h - requests to refresh rows, gathered
#pragma once

#include "pxnc.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace pyxen {

/// Requests in the order in which they are to be served, each feature once.
class UpdateBatch {
public:
    struct Request {
        PxnHandle handle;
        const char* name;
    };

    /// Adds a request at the end. False when there was one for the same feature: that one goes.
    bool Add(PxnHandle handle, const char* name) {
        const std::string_view text = name;
        const auto same = std::find_if(requests.begin(), requests.end(), [&](const Request& known) {
            return known.handle == handle && known.name == text;
        });
        const bool isNew = same == requests.end();
        if (!isNew) {
            requests.erase(same);
        }
        requests.push_back({handle, name});
        return isNew;
    }
    const std::vector<Request>& GetRequests() const { return requests; }

private:
    std::vector<Request> requests;
};

} // namespace pyxen
