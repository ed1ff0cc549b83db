# Two commands do everything: `make run` and `make test`. Both install what they need first.
# PRESET picks one of dev, release, asan, tsan for `make test`.
PRESET ?= dev

.PHONY: run test bench format clean bootstrap

bootstrap:
	@scripts/bootstrap.sh

run: bootstrap
	@scripts/build.sh release hearing-test
	build/release/bin/hearing-test simulate

test: bootstrap
	@scripts/build.sh $(PRESET)
	ctest --preset $(PRESET)

bench: bootstrap
	@scripts/build.sh release
	@for program in build/release/benchmarks/*_benchmark; do $$program || exit 1; done

format:
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	rm -rf build
