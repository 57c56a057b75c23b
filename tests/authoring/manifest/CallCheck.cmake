include("${CMAKE_CURRENT_LIST_DIR}/../../../cmake/OstrelBundleManifest.cmake")
ostrel_check_bundle_manifest("${MANIFEST}" alpha)
