// The part of ostrel.dll's C interface (ostrel_c.h) this example calls, declared for Go through
// package syscall alone: no cgo, so the host builds with CGO_ENABLED=0 from any machine.
package main

import (
	"fmt"
	"math"
	"os"
	"strconv"
	"syscall"
	"unsafe"
)

// The headers these declarations follow. A DLL serves them when its major version is the same
// and its version number is at least this one.
const (
	headerVersionMajor  = 1
	headerVersionNumber = 1000000
)

type status int32

const (
	statusOK               status = 0
	statusNoServer         status = 1
	statusServerRefused    status = 2
	statusBadArgument      status = 3
	statusServerCallFailed status = 4
	statusNotReady         status = 5
	statusBadFile          status = 6
	statusOutOfMemory      status = 7
	statusWrongThread      status = 8
	statusReloadNeeded     status = 9
)

// Element types of the buffers.
const (
	typeInt8   = 0
	typeUint8  = 1
	typeInt16  = 2
	typeUint16 = 3
	typeInt32  = 4
	typeUint32 = 5
	typeInt64  = 6
	typeUint64 = 7
	typeFloat  = 8
	typeDouble = 9
)

// Temperature units.
const (
	unitCelsius    = 0
	unitFahrenheit = 1
	unitKelvin     = 2
	unitRankine    = 3
)

// Status bytes of converted pixels.
const (
	lutValid   = 0
	lutOutside = 1
	lutBelow   = 2
	lutAbove   = 4
)

// ostrel_factory_cal: 28 words of 32 bits, temperatures in kelvin.
type factoryCal struct {
	recordVersion   uint32
	cameraSerial    uint32
	lensId          uint32
	filterId        uint32
	detectorWidth   uint32
	detectorHeight  uint32
	calibrationDay  uint32
	housingTempK    float32
	ambientTempK    float32
	checksum        uint32
	calKind         uint32
	calCoef         [6]float32
	calCoefExtra    float32
	countsLow       uint32
	countsHigh      uint32
	tempMinK        float32
	tempMaxK        float32
	calAux          float32
	integrationTime float32 // microseconds
	rangeIndex      uint32
	emissivityRef   float32
	shutterTempK    float32
	flags           uint32
}

// ostrel_object_params: 20 words of 32 bits, temperatures in kelvin.
type objectParams struct {
	recordVersion          uint32
	emissivity             float32
	distance               float32
	relativeHumidity       float32
	atmosphereTempK        float32
	reflectedTempK         float32
	windowTransmission     float32
	windowTempK            float32
	windowReflection       float32
	windowReflectedTempK   float32
	atmosphereTransmission float32
	objFactorA             float32
	opticsTransmission     float32
	objTempA               float32
	objTempB               float32
	opticsTempK            float32
	estimateAtmosphere     uint32
	objFactorB             float32
	spanLowK               float32
	spanHighK              float32
}

// The build fails if a record's size drifts from the header's.
var (
	_ [28 * 4]byte = [unsafe.Sizeof(factoryCal{})]byte{}
	_ [20 * 4]byte = [unsafe.Sizeof(objectParams{})]byte{}
)

type engine uintptr       // ostrel_engine*
type subscription uintptr // ostrel_subscription*

// ostrel.dll from the DLL search path, or the file OSTREL_DLL names.
var (
	ostrelDllPath = os.Getenv("OSTREL_DLL")
	ostrelDll     = syscall.NewLazyDLL(ostrelDllName())
)

func ostrelDllName() string {
	if ostrelDllPath != "" {
		return ostrelDllPath
	}
	return "ostrel.dll"
}

var (
	procVersion              = ostrelDll.NewProc("ostrel_version")
	procLastError            = ostrelDll.NewProc("ostrel_last_error")
	procServerVersion        = ostrelDll.NewProc("ostrel_server_version")
	procEngineCreate         = ostrelDll.NewProc("ostrel_engine_create")
	procEngineDestroy        = ostrelDll.NewProc("ostrel_engine_destroy")
	procSetFactoryCal        = ostrelDll.NewProc("ostrel_engine_set_factory_cal")
	procLoadFactoryCal       = ostrelDll.NewProc("ostrel_engine_load_factory_cal")
	procGetFactoryCal        = ostrelDll.NewProc("ostrel_engine_get_factory_cal")
	procLoadObjectParams     = ostrelDll.NewProc("ostrel_engine_load_object_params")
	procSetActivePresets     = ostrelDll.NewProc("ostrel_engine_set_active_presets")
	procConvertUniform       = ostrelDll.NewProc("ostrel_convert_uniform")
	procConvertMapped        = ostrelDll.NewProc("ostrel_convert_mapped")
	procConvertKeyed         = ostrelDll.NewProc("ostrel_convert_keyed")
	procCountsToTemp         = ostrelDll.NewProc("ostrel_counts_to_temp")
	procTempToCounts         = ostrelDll.NewProc("ostrel_temp_to_counts")
	procIntegrationTimeRange = ostrelDll.NewProc("ostrel_integration_time_range")
	procTempRange            = ostrelDll.NewProc("ostrel_temp_range")
	procAttachMessageThread  = ostrelDll.NewProc("ostrel_attach_message_thread")
	procDetachMessageThread  = ostrelDll.NewProc("ostrel_detach_message_thread")
	procSubscribe            = ostrelDll.NewProc("ostrel_subscribe")
	procUnsubscribe          = ostrelDll.NewProc("ostrel_unsubscribe")
)

var procLoadLibraryExW = syscall.NewLazyDLL("kernel32.dll").NewProc("LoadLibraryExW")

// loadOstrel loads the DLL and finds every function above, so that a missing one is an error
// at start rather than a panic at its first call.
func loadOstrel() error {
	if ostrelDllPath != "" {
		// LoadLibraryW would look for ostrel.dll's own DLLs (vz.dll, vz.reduce.dll) beside the
		// program and in the current folder, not beside ostrel.dll: load it first with its
		// folder searched; the Load below then finds it loaded.
		path, err := syscall.UTF16PtrFromString(ostrelDllPath)
		if err != nil {
			return err
		}
		const loadWithAlteredSearchPath = 0x00000008
		h, _, err := procLoadLibraryExW.Call(uintptr(unsafe.Pointer(path)), 0,
			loadWithAlteredSearchPath)
		if h == 0 {
			return fmt.Errorf("Failed to load %s: %v", ostrelDllPath, err)
		}
	}
	if err := ostrelDll.Load(); err != nil {
		return err
	}
	for _, proc := range []*syscall.LazyProc{procVersion, procLastError, procServerVersion,
		procEngineCreate, procEngineDestroy, procSetFactoryCal, procLoadFactoryCal,
		procGetFactoryCal, procLoadObjectParams, procSetActivePresets, procConvertUniform,
		procConvertMapped, procConvertKeyed, procCountsToTemp, procTempToCounts,
		procIntegrationTimeRange, procTempRange, procAttachMessageThread,
		procDetachMessageThread, procSubscribe, procUnsubscribe} {
		if err := proc.Find(); err != nil {
			return err
		}
	}
	return nil
}

// call passes its arguments to a function returning an ostrel_status. Pointers converted to
// uintptr in the caller's argument list stay alive and in place until it returns.
//
//go:uintptrescapes
func call(proc *syscall.LazyProc, args ...uintptr) status {
	r, _, _ := proc.Call(args...)
	return status(int32(r)) // the upper half of RAX is not part of a 32-bit return
}

// cString copies a NUL-terminated string that the library owns.
func cString(p uintptr) string {
	if p == 0 {
		return ""
	}
	var text []byte
	// Read through the uintptr's own storage: the text is C memory, which Go's collector neither
	// moves nor frees, and vet then has no conversion of a uintptr to question.
	for c := *(*unsafe.Pointer)(unsafe.Pointer(&p)); *(*byte)(c) != 0; c = unsafe.Add(c, 1) {
		text = append(text, *(*byte)(c))
	}
	return string(text)
}

// cPath is a file name in UTF-8 with its terminating NUL.
func cPath(path string) *byte {
	text := append([]byte(path), 0)
	return &text[0]
}

func ostrelVersion() uint32 {
	r, _, _ := procVersion.Call()
	return uint32(r)
}

func lastError() string {
	r, _, _ := procLastError.Call()
	return cString(r)
}

func serverVersion(major, minor, build *uint32) status {
	return call(procServerVersion, uintptr(unsafe.Pointer(major)), uintptr(unsafe.Pointer(minor)),
		uintptr(unsafe.Pointer(build)))
}

func engineCreate(e *engine) status {
	return call(procEngineCreate, uintptr(unsafe.Pointer(e)))
}

func engineDestroy(e engine) status {
	return call(procEngineDestroy, uintptr(e))
}

func engineSetFactoryCal(e engine, preset uint32, record *factoryCal) status {
	return call(procSetFactoryCal, uintptr(e), uintptr(preset), uintptr(unsafe.Pointer(record)))
}

func engineLoadFactoryCal(e engine, preset uint32, path string) status {
	return call(procLoadFactoryCal, uintptr(e), uintptr(preset), uintptr(unsafe.Pointer(cPath(path))))
}

func engineGetFactoryCal(e engine, preset uint32, record *factoryCal) status {
	return call(procGetFactoryCal, uintptr(e), uintptr(preset), uintptr(unsafe.Pointer(record)))
}

func engineLoadObjectParams(e engine, path string) status {
	return call(procLoadObjectParams, uintptr(e), uintptr(unsafe.Pointer(cPath(path))))
}

func engineSetActivePresets(e engine, active *[4]uint8) status {
	return call(procSetActivePresets, uintptr(e), uintptr(unsafe.Pointer(active)))
}

// In the conversions, in and out point at n elements of inType and outType, and every slice holds
// n elements but keyToPreset, which has one for every key value in pixelKeys.

func convertUniform(e engine, preset uint32, in unsafe.Pointer, inType uint32, out unsafe.Pointer,
	outType uint32, n uint32, statusBytes []uint8, unit uint32) status {
	return call(procConvertUniform, uintptr(e), uintptr(preset), uintptr(in), uintptr(inType),
		uintptr(out), uintptr(outType), uintptr(n), uintptr(unsafe.Pointer(&statusBytes[0])),
		uintptr(unit))
}

func convertMapped(e engine, presetMap []uint8, in unsafe.Pointer, inType uint32, out unsafe.Pointer,
	outType uint32, n uint32, statusBytes []uint8, unit uint32) status {
	return call(procConvertMapped, uintptr(e), uintptr(unsafe.Pointer(&presetMap[0])), uintptr(in),
		uintptr(inType), uintptr(out), uintptr(outType), uintptr(n),
		uintptr(unsafe.Pointer(&statusBytes[0])), uintptr(unit))
}

func convertKeyed(e engine, pixelKeys []uint32, keyToPreset []uint8, in unsafe.Pointer,
	inType uint32, out unsafe.Pointer, outType uint32, n uint32, statusBytes []uint8,
	unit uint32) status {
	return call(procConvertKeyed, uintptr(e), uintptr(unsafe.Pointer(&pixelKeys[0])),
		uintptr(unsafe.Pointer(&keyToPreset[0])), uintptr(in), uintptr(inType), uintptr(out),
		uintptr(outType), uintptr(n), uintptr(unsafe.Pointer(&statusBytes[0])), uintptr(unit))
}

func countsToTemp(e engine, preset uint32, counts uint16, temp *float32, statusByte *uint8,
	unit uint32) status {
	return call(procCountsToTemp, uintptr(e), uintptr(preset), uintptr(counts),
		uintptr(unsafe.Pointer(temp)), uintptr(unsafe.Pointer(statusByte)), uintptr(unit))
}

// temp is the third argument, so it travels in XMM2: the call stub loads the first four
// arguments into XMM0-3 as well as the integer registers.
func tempToCounts(e engine, preset uint32, temp float32, unit uint32, counts *uint16) status {
	return call(procTempToCounts, uintptr(e), uintptr(preset), uintptr(math.Float32bits(temp)),
		uintptr(unit), uintptr(unsafe.Pointer(counts)))
}

func integrationTimeRange(e engine, preset uint32, minTime, maxTime *uint32) status {
	return call(procIntegrationTimeRange, uintptr(e), uintptr(preset),
		uintptr(unsafe.Pointer(minTime)), uintptr(unsafe.Pointer(maxTime)))
}

func tempRange(e engine, preset uint32, integrationTime uint32, minTemp, maxTemp *float32) status {
	return call(procTempRange, uintptr(e), uintptr(preset), uintptr(integrationTime),
		uintptr(unsafe.Pointer(minTemp)), uintptr(unsafe.Pointer(maxTemp)))
}

func attachMessageThread() status {
	return call(procAttachMessageThread)
}

func detachMessageThread() status {
	return call(procDetachMessageThread)
}

// callback is made by syscall.NewCallback from a func(context uintptr, value uint64) uintptr.
func subscribe(callback uintptr, context uintptr, token *subscription) status {
	return call(procSubscribe, callback, context, uintptr(unsafe.Pointer(token)))
}

func unsubscribe(token subscription) status {
	return call(procUnsubscribe, uintptr(token))
}

// cFixed formats x as C's printf("%.*f") does here: the exact binary value correctly rounded,
// ties to even, and infinities and NaN in C's words rather than Go's.
func cFixed(x float64, decimals int) string {
	switch {
	case math.IsNaN(x):
		return "nan"
	case math.IsInf(x, 1):
		return "inf"
	case math.IsInf(x, -1):
		return "-inf"
	}
	return strconv.FormatFloat(x, 'f', decimals, 64)
}
