#include "targets.h"

#include "fuzz_input.h"
#include "survey/layer_list.h"

#include <stdexcept>

namespace tarvo {

// A list that is read, and written, is read again as the same.
void take_layer_list(std::string_view input)
{
    LayerList list;
    try {
        list = read_layer_list_text(input, "/survey");
    } catch (const std::runtime_error&) {
        return;
    }
    const std::string text = layer_list_text(list, "/survey");
    require_same(text, layer_list_text(read_layer_list_text(text, "/survey"), "/survey"));
}

} // namespace tarvo
