#pragma once

#include "cppmicroservices/FrameworkConfig.h"

#include <string>

/// The names of manifest entries, framework properties and service properties, and their fixed values.
///
/// They are objects of the framework's library and so not usable in initialisers of static objects that may run
/// before it is initialised.
namespace cppmicroservices::Constants {

US_Framework_EXPORT extern const std::string SYSTEM_BUNDLE_LOCATION;     ///< "System Bundle"
US_Framework_EXPORT extern const std::string SYSTEM_BUNDLE_SYMBOLICNAME; ///< "system_bundle"

// Manifest entries.
US_Framework_EXPORT extern const std::string BUNDLE_ACTIVATOR;                     ///< "bundle.activator"
US_Framework_EXPORT extern const std::string BUNDLE_CATEGORY;                      ///< "bundle.category"
US_Framework_EXPORT extern const std::string BUNDLE_COPYRIGHT;                     ///< "bundle.copyright"
US_Framework_EXPORT extern const std::string BUNDLE_DESCRIPTION;                   ///< "bundle.description"
US_Framework_EXPORT extern const std::string BUNDLE_MANIFESTVERSION;               ///< "bundle.manifest_version"
US_Framework_EXPORT extern const std::string BUNDLE_NAME;                          ///< "bundle.name"
US_Framework_EXPORT extern const std::string BUNDLE_VENDOR;                        ///< "bundle.vendor"
US_Framework_EXPORT extern const std::string BUNDLE_VERSION;                       ///< "bundle.version"
US_Framework_EXPORT extern const std::string BUNDLE_DOCURL;                        ///< "bundle.doc_url"
US_Framework_EXPORT extern const std::string BUNDLE_CONTACTADDRESS;                ///< "bundle.contact_address"
US_Framework_EXPORT extern const std::string BUNDLE_SYMBOLICNAME;                  ///< "bundle.symbolic_name"
US_Framework_EXPORT extern const std::string BUNDLE_LOCALIZATION;                  ///< "bundle.localization"
US_Framework_EXPORT extern const std::string BUNDLE_LOCALIZATION_DEFAULT_BASENAME; ///< "US-INF/l10n/bundle"
US_Framework_EXPORT extern const std::string BUNDLE_ACTIVATIONPOLICY;              ///< "bundle.activation_policy"
US_Framework_EXPORT extern const std::string ACTIVATION_LAZY;                      ///< "lazy"

// Framework properties; each begins with "org.cppmicroservices.".
US_Framework_EXPORT extern const std::string FRAMEWORK_VERSION;                   ///< "…framework.version"
US_Framework_EXPORT extern const std::string FRAMEWORK_VENDOR;                    ///< "…framework.vendor"
US_Framework_EXPORT extern const std::string FRAMEWORK_STORAGE;                   ///< "…framework.storage"
US_Framework_EXPORT extern const std::string FRAMEWORK_STORAGE_CLEAN;             ///< "…framework.storage.clean"
US_Framework_EXPORT extern const std::string FRAMEWORK_STORAGE_CLEAN_ONFIRSTINIT; ///< "onFirstInit"
US_Framework_EXPORT extern const std::string FRAMEWORK_THREADING_SUPPORT;         ///< "…framework.threading.support"
US_Framework_EXPORT extern const std::string FRAMEWORK_THREADING_SINGLE;          ///< "single"
US_Framework_EXPORT extern const std::string FRAMEWORK_THREADING_MULTI;           ///< "multi"
US_Framework_EXPORT extern const std::string FRAMEWORK_LOG;                       ///< "…framework.log"
US_Framework_EXPORT extern const std::string FRAMEWORK_UUID;                      ///< "…framework.uuid"
US_Framework_EXPORT extern const std::string FRAMEWORK_WORKING_DIR;               ///< "…framework.working.dir"
US_Framework_EXPORT extern const std::string
    FRAMEWORK_BUNDLE_VALIDATION_FUNC;                              ///< "…framework.bundle.validation.function"
US_Framework_EXPORT extern const std::string LIBRARY_LOAD_OPTIONS; ///< "…library.load.options"

// Service properties.
US_Framework_EXPORT extern const std::string OBJECTCLASS;         ///< "objectclass"
US_Framework_EXPORT extern const std::string SERVICE_ID;          ///< "service.id"
US_Framework_EXPORT extern const std::string SERVICE_PID;         ///< "service.pid"
US_Framework_EXPORT extern const std::string SERVICE_RANKING;     ///< "service.ranking"
US_Framework_EXPORT extern const std::string SERVICE_VENDOR;      ///< "service.vendor"
US_Framework_EXPORT extern const std::string SERVICE_DESCRIPTION; ///< "service.description"
US_Framework_EXPORT extern const std::string SERVICE_SCOPE;       ///< "service.scope"
US_Framework_EXPORT extern const std::string SCOPE_SINGLETON;     ///< "singleton"
US_Framework_EXPORT extern const std::string SCOPE_BUNDLE;        ///< "bundle"
US_Framework_EXPORT extern const std::string SCOPE_PROTOTYPE;     ///< "prototype"

} // namespace cppmicroservices::Constants
