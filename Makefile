# Two commands do everything: `make run` and `make test`. Both install what they need first.
# PRESET picks one of release, dev, asan, tsan for `make test`.
PRESET ?= release
# Where `make install` puts the libraries and the programs.
PREFIX ?= /usr/local
# How long `make fuzz` runs each fuzzer; FUZZ_RUNS, if given, says instead how often.
FUZZ_SECONDS ?= 60

programs := hearing-app hearing-test hearing-service

.PHONY: run programs test install bench fuzz deb docs web format clean bootstrap

bootstrap:
	@scripts/bootstrap.sh

# Opens the application where there is a display; else runs a simulated test in the terminal.
run: bootstrap
ifneq ($(DISPLAY)$(WAYLAND_DISPLAY),)
	@scripts/build.sh release hearing-app
	build/release/bin/hearing-app
else
	@scripts/build.sh release hearing-test
	build/release/bin/hearing-test simulate --png build/audiogram.png
endif

programs: bootstrap
	@scripts/build.sh release $(programs)

install: bootstrap
	@scripts/build.sh release $(programs) ORNBackendContracts
	cmake --install build/release --prefix "$(PREFIX)" > /dev/null

test: bootstrap
	@scripts/build.sh $(PRESET)
	ctest --preset $(PRESET)

# The programs that ours are compared with may be missing; it then says so.
bench:
	@scripts/bootstrap.sh bench || scripts/bootstrap.sh
	@scripts/bench.sh

fuzz:
	@scripts/bootstrap.sh fuzz
	@scripts/fuzz.sh $(if $(FUZZ_RUNS),-runs=$(FUZZ_RUNS),-max_total_time=$(FUZZ_SECONDS))

deb: bootstrap
	@scripts/bootstrap.sh deb
	@scripts/build.sh package
	@cd build/package && cpack > /dev/null
	@ls build/package/packages/*.deb

docs: bootstrap
	@scripts/bootstrap.sh docs
	@scripts/docs.sh

# A folder of static files, build/web/bin, for a phone's browser or a desktop's; served on this machine alone.
web:
	@scripts/web.sh
	@echo "http://127.0.0.1:8000/ (Ctrl-C ends it)"
	@python3 -m http.server 8000 --bind 127.0.0.1 --directory build/web/bin

format:
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	rm -rf build
