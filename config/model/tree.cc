#include "qr_config/config/model/tree.h"

template class tree_node_ch_iter<ConfigManagerTypes::Node>;
template class const_tree_node_ch_iter<ConfigManagerTypes::Node>;
template class tree_node<ConfigManagerTypes::Node>;
template class tree<ConfigManagerTypes::Node>;
