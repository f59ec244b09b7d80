#include "qr_config/config/model/field_list.h"

template class tnode<ConfigManagerTypes::Field>;
template class node_iterator<ConfigManagerTypes::Field, long long>;
template class const_node_iterator<ConfigManagerTypes::Field, long long>;
