// qr_config: the configuration library of the Quorin middleware.
//
// This header is all a caller includes. It brings in:
//  - ConfigManager, the process-wide manager, with its nested model types
//    ConfigManager::NodePath, ConfigManager::Field, ConfigManager::Node, ConfigManager::Tree
//    and the containers tnode<Field> and tree<Node>;
//  - ConfigStartup and ConfigSession, the host's start-up entry points, and
//    Initialization::Mode;
//  - QRError with the catalogue of its codes (QRErrorCode) and the core classes
//    Quorin::QRError and Quorin::Error;
//  - the platform types that appear in these interfaces: orv_utf8string, ucs2string,
//    stdx::path, Quorin::LocaleDescriptor, orv_locale, Registry, Process, SFile.
#pragma once

#include "config/manager/config_manager.h"
#include "config/manager/config_startup.h"
#include "config/manager/initialization.h"
#include "config/manager/qr_error.h"
#include "config/model/config_tree.h"
#include "config/model/field.h"
#include "config/model/field_list.h"
#include "config/model/node.h"
#include "config/model/node_path.h"
#include "config/model/tree.h"
#include "config/version.h"
#include "platform/error.h"
#include "platform/i18n_string.h"
#include "platform/locale_descriptor.h"
#include "platform/orv_locale.h"
#include "platform/process.h"
#include "platform/registry.h"
#include "platform/sfile.h"
#include "platform/stdx_path.h"
