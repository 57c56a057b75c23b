# Included after project() in the build of `./dev mutants`. Not in CMAKE_CXX_FLAGS, which tests hand on to projects of
# their own. A function that returns nothing where its type promises something is no mutant worth running.
add_compile_options(-fsanitize-coverage=trace-pc -Werror=return-type)
add_link_options("${OSTREL_COVERAGE_RUNTIME}")
