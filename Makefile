# Two entry points for a fresh Debian machine (run as root):
#   make demo   builds the program and runs the bundled example
#   make test   builds everything and runs every test through ctest
BUILD    ?= build
JOBS     ?= 2
PACKAGES := cmake g++ make libgtest-dev libbenchmark-dev
EXAMPLE  ?= examples/al2sio5

.PHONY: demo test build deps sanitize bench clean

deps:
	@missing=""; for p in $(PACKAGES); do \
	  dpkg -s $$p >/dev/null 2>&1 || missing="$$missing $$p"; done; \
	if [ -n "$$missing" ]; then \
	  echo "installing:$$missing"; \
	  apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $$missing; \
	fi

build: deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release >/dev/null
	cmake --build $(BUILD) -j $(JOBS)

demo: build
	@./scripts/run-example.sh $(BUILD)/stratamath $(EXAMPLE)

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The same tests under AddressSanitizer and UndefinedBehaviorSanitizer.
sanitize: deps
	cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DSM_SANITIZE=ON -DSM_BENCH=OFF >/dev/null
	cmake --build build-asan -j $(JOBS)
	cd build-asan && ctest --output-on-failure -j $(JOBS)

bench: build
	@for b in $(BUILD)/bench/*_bench; do echo "== $$b"; $$b; done

clean:
	rm -rf $(BUILD) build-asan
