// qr_config: the configuration library of the Quorin middleware.
//
// This header is all a caller includes. It brings in:
//  - ConfigManager, the process-wide manager, with its nested model types
//    ConfigManager::NodePath, ConfigManager::Field, ConfigManager::Node, ConfigManager::Tree
//    and the containers tnode<Field> and tree<Node>;
//  - ConfigStartup and ConfigSession, the host's start-up entry points, and
//    Initialization::Mode;
//  - LoadObserver, which receives what the start-up reads and decides (diagnostics with
//    file and line, and where each value came from), and VocabularyOf, the elements and
//    attributes each file kind's reader acts on;
//  - qr_config::Value, ValueOr and DatabaseNode, which read a typed value in one call;
//  - QRError with the catalogue of its codes (QRErrorCode) and the core classes
//    Quorin::QRError and Quorin::Error;
//  - the platform types that appear in these interfaces: orv_utf8string, ucs2string,
//    stdx::path, Quorin::LocaleDescriptor, orv_locale, Registry, Process, SFile.
#pragma once

#include "qr_config/config/manager/config_manager.h"
#include "qr_config/config/manager/config_startup.h"
#include "qr_config/config/manager/config_values.h"
#include "qr_config/config/manager/initialization.h"
#include "qr_config/config/model/config_tree.h"
#include "qr_config/config/model/field.h"
#include "qr_config/config/model/field_list.h"
#include "qr_config/config/model/node.h"
#include "qr_config/config/model/node_path.h"
#include "qr_config/config/model/tree.h"
#include "qr_config/config/readers/load_observer.h"
#include "qr_config/config/readers/reader_vocabulary.h"
#include "qr_config/config/version.h"
#include "qr_config/platform/error.h"
#include "qr_config/platform/i18n_string.h"
#include "qr_config/platform/locale_descriptor.h"
#include "qr_config/platform/orv_locale.h"
#include "qr_config/platform/process.h"
#include "qr_config/platform/qr_error.h"
#include "qr_config/platform/registry.h"
#include "qr_config/platform/sfile.h"
#include "qr_config/platform/stdx_path.h"
